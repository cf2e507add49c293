// kolvane: inspect LonWorks device profiles and type catalogues from the shell.

#include <iostream>

#include <CLI/CLI.hpp>

#include "Commands.h"

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

  kolvane::cli::RawOptions raw;
  CLI::App* raw_command = app.add_subcommand(
      "raw", "Print the raw bytes (hexadecimal, most significant first) of a value of a type.");
  raw_command->add_option("--catalogue", raw.catalogue, "Type catalogue; the bundled one by default");
  raw_command->add_option("TYPE", raw.type, "Type identifier, e.g. temp_p")->required();
  raw_command->add_option("VALUE", raw.value, "Value in the type's unit, e.g. 21.5, OC_OCCUPIED, Invalid")
      ->required();

  kolvane::cli::CompatOptions compat;
  CLI::App* compat_command = app.add_subcommand(
      "compat", "Print the types a type connects to according to the NVO compatibility table.");
  compat_command->add_option("--catalogue", compat.catalogue,
                             "Type catalogue; the bundled one by default");
  compat_command->add_option("--table", compat.table,
                             "NVO compatibility table (nvotable.xml); the bundled one by default");
  compat_command->add_option("TYPE", compat.type, "Type identifier, e.g. temp_p")->required();

  CLI11_PARSE(app, argc, argv);

  if (app.got_subcommand(types_command)) return kolvane::cli::RunTypes(types, std::cout, std::cerr);
  if (app.got_subcommand(raw_command)) return kolvane::cli::RunRaw(raw, std::cout, std::cerr);
  if (app.got_subcommand(compat_command)) {
    return kolvane::cli::RunCompat(compat, std::cout, std::cerr);
  }
  return 1;
}
