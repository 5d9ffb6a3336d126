#include "cli/commands.h"

int main(int argc, char** argv)
{
    return kelvane::RunCommand(argc, argv);
}
