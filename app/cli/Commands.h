#pragma once

#include <ostream>
#include <string>
#include <vector>

// The kolvane tool's commands. Each writes its result on out and problems on err, one line each,
// and returns the exit status.
namespace kolvane::cli {

// "kolvane types": the catalogue's types as a table.
struct TypesOptions {
  std::string catalogue;         // the catalogue file; the bundled one when empty
  std::vector<std::string> ids;  // types to list; every type when empty
};
int RunTypes(const TypesOptions& options, std::ostream& out, std::ostream& err);

// "kolvane raw": the raw bytes of a value of a type.
struct RawOptions {
  std::string catalogue;
  std::string type;
  std::string value;
};
int RunRaw(const RawOptions& options, std::ostream& out, std::ostream& err);

// "kolvane compat": the output types that connect to a type, by the NVO table.
struct CompatOptions {
  std::string catalogue;
  std::string table;  // the NVO table file; the bundled one when empty
  std::string type;
};
int RunCompat(const CompatOptions& options, std::ostream& out, std::ostream& err);

}  // namespace kolvane::cli
