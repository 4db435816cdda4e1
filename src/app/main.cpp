#include "app/BrindleApp.h"

int main(int /*argc*/, char** argv) {
    return brindle::BrindleApp::run(argv);
}
