#include "cli/commands.h"
#include "ui/start_up.h"

int main(int argc, char** argv)
{
    const QString file = argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString();
    const bool opensWindow = argc == 1 || kelvane::IsEquationFile(file);
    if (opensWindow && kelvane::HasDisplay())
        return kelvane::RunWindow(argc, argv, file);
    return kelvane::RunCommand(argc, argv);
}
