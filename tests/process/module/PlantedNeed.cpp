// Makes a module need the library of PlantedHelper.cpp.
int plantedHelper();

namespace
{
const int need = plantedHelper();
}
