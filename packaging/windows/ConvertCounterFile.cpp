#include <iostream>

#include "counter/CounterFile.h"
#include "platform/DiskFileSystem.h"

/// Makes the run files of a counter file in a folder, on a real disk.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        vantor::DiskFileSystem files(vantor::ExecutableFolder());
        vantor::RunRecord run;
        for (const std::string& name : vantor::ConvertCounterFile(files, argv[1], argv[2], run))
            std::cout << name << '\n';
        return 0;
    } catch (const vantor::RunTimeError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
