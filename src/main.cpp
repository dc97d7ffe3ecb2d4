#include "app/mapplication.h"

int main(int argc, char** argv)
{
    MApplication::prepareProcess();
    return MApplication::run(argc, argv);
}
