#include "shell/startup.h"

int main(int argc, char* argv[]) {
    return tarvel::runTarvel(argc, argv);
}
