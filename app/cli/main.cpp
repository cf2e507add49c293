// kolvane: inspect LonWorks device profiles and type catalogues from the shell.

#include <iostream>

#include <CLI/CLI.hpp>

#include "TypesCommand.h"

int main(int argc, char** argv) {
  CLI::App app{"Inspect LonWorks device profiles and their type catalogue.", "kolvane"};
  app.set_version_flag("--version", KOLVANE_VERSION);
  app.require_subcommand(1);

  kolvane::cli::TypesOptions types;
  CLI::App* types_command =
      app.add_subcommand("types", "List the catalogue's types: kind, length, scaling, limits, "
                                  "units and enumeration states.");
  types_command->add_option("--catalogue", types.catalogue,
                            "Type catalogue (snvts.xml); the bundled one by default");
  types_command->add_option("ID", types.ids,
                            "Identifiers to list (the text after SNVT_); all when none");

  CLI11_PARSE(app, argc, argv);

  if (app.got_subcommand(types_command)) return kolvane::cli::RunTypes(types, std::cout, std::cerr);
  return 1;
}
