#include "app/shell/AppProgram.h"

int main(int argc, char** argv)
{
    return volvelle::runApp(argc, argv);
}
