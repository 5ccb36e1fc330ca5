// save_copy FROM TO: what the window does for "Save...", once a byte comes in or the input ends. Exit code 0
// when it has saved.
#include "support/OutputFile.h"

#include <QFile>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    std::getchar();
    return support::CopyToNewFile(QFile::decodeName(argv[1]), QFile::decodeName(argv[2])) ? 0 : 1;
}
