#pragma once

#include "core/ApplicationState.h"
#include "core/ports/ApplicationEnd.h"
#include "core/ports/Clock.h"
#include "core/ports/Desktop.h"
#include "core/ports/DocumentWriter.h"
#include "core/ports/FileSystem.h"
#include "core/ports/LongWork.h"
#include "core/ports/MessageBoxes.h"
#include "core/ports/Programs.h"
#include "core/ports/RecordSet.h"
#include "core/ports/RemoteApi.h"
#include "core/ports/Screens.h"
#include "core/ports/SerialPort.h"
#include "core/ports/Spreadsheet.h"
#include "core/ports/TileSource.h"
#include "core/ports/WindowMemory.h"

namespace vantor {

/// What a screen works with: the state of the program and the ways to the outside. Owned by main, or by a test.
struct AppContext {
    ApplicationState& State;
    FileSystem& Files;
    MessageBoxes& Messages;
    Screens& OtherScreens;
    Desktop& DesktopServices;
    Clock& Time;
    ApplicationEnd& End;
    WindowMemory& Memory;
    SerialPort& Serial;
    RemoteApi& Device;
    const DatabaseEngine& Databases;
    const Spreadsheet& Sheets;
    const DocumentWriter& Documents;
    const Programs& OtherPrograms;
    LongWork& Work;
    const TileFiles& Tiles;
};

}  // namespace vantor
