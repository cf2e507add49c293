#include "Documents.h"

#include "Files.h"
#include "foundation/Globals.h"

namespace kolvane::cli {

std::shared_ptr<pugi::xml_document> ReadDocument(const std::string& path,
                                                 const std::string& default_file,
                                                 const std::string& root, std::ostream& err) {
  std::string error;
  auto document = app::ReadDocument(path, default_file, root, error);
  if (!document) err << "kolvane: error: " << error << '\n';
  return document;
}

bool WriteFileAtomically(const std::string& path, const std::string& text, std::ostream& out,
                         std::ostream& err) {
  // "-" is the command's standard output.
  if (path == "-") {
    out << text << std::flush;
    return static_cast<bool>(out);
  }
  std::string error;
  if (app::WriteFileAtomically(path, text, error)) return true;
  err << "kolvane: error: " << error << '\n';
  return false;
}

bool UseCatalogue(const std::string& path, std::ostream& err) {
  auto document = ReadDocument(path, "snvts.xml", "SNVTS", err);
  if (!document) return false;
  Globals::SetSnvtCatalogDocument(document);
  return true;
}

}  // namespace kolvane::cli
