// A library that a plug-in needs, and that lies where nothing may be taken from.
int plantedHelper();

int plantedHelper()
{
    return 1;
}
