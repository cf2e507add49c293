#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace kolvane::cli {

// Options of "kolvane types".
struct TypesOptions {
  std::string catalogue;            // the catalogue file; the bundled one when empty
  std::vector<std::string> ids;     // types to list; every type when empty
};

// Lists the catalogue's types as a table on out; problems go to err. Returns the exit status.
int RunTypes(const TypesOptions& options, std::ostream& out, std::ostream& err);

// The bundled catalogue: installed beside the tool, else the one in the source tree.
std::string BundledCatalogue();

}  // namespace kolvane::cli
