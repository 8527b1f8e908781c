#include "gpsobd/clsPPCFileTransfer.h"

#include "gpsobd/modWinCEFileManagement.h"
#include "gpsobd/modWinCERAPIConnectionHandler.h"

namespace vantor {

std::int32_t clsPPCFileTransfer::CopyToDesktop(const std::string& devicePath, const std::string& desktopPath,
                                               bool overwrite) {
    state_.TransferResult = vantor::CopyToDesktop(state_, api_, files_, devicePath, desktopPath, overwrite);
    return state_.TransferResult;
}

std::int32_t clsPPCFileTransfer::CopyToDevice(const std::string& desktopPath, const std::string& devicePath,
                                              bool overwrite) {
    return vantor::CopyToDevice(state_, api_, files_, desktopPath, devicePath, overwrite);
}

void clsPPCFileTransfer::Terminate() { vantor::Terminate(state_, api_); }

bool clsPPCFileTransfer::Initialize() {
    state_.ConnectedResult = vantor::Initialize(state_, api_);
    return state_.ConnectedResult;
}

}  // namespace vantor
