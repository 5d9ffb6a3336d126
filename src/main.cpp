#include "cli/commands.h"
#include "ui/start_up.h"

int main(int argc, char** argv)
{
    if (argc == 1 && kelvane::HasDisplay())
        return kelvane::RunWindow(argc, argv);
    return kelvane::RunCommand(argc, argv);
}
