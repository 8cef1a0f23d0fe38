#include <CLI/CLI.hpp>

#include <iostream>

int main(int argc, char** argv) {
    CLI::App app{"vantel: preview, render and check overlay documents"};
    app.set_version_flag("--version", std::string("vantel ") + VANTEL_VERSION);
    app.require_subcommand(0, 1);
    CLI11_PARSE(app, argc, argv);
    if (argc == 1) std::cout << app.help();
    return 0;
}
