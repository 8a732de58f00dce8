// SPDX-License-Identifier: MIT
// Stands in for a desktop's viewer: appends what it was to show to the file ".shown" beside it.

#include <fstream>
#include <string>

int main(int argc, char **argv)
{
    const std::string self = argv[0];
    std::ofstream shown(self + ".shown", std::ios::app | std::ios::binary);
    for (int index = 1; index < argc; ++index)
        shown << argv[index] << '\n';
    return 0;
}
