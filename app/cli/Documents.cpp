#include "Documents.h"

#include "Files.h"
#include "XmlFile.h"
#include "foundation/Globals.h"

namespace kolvane::cli {

std::string DocumentPath(const std::string& path, const std::string& default_file) {
  return path.empty() ? app::BundledExample(default_file) : path;
}

std::shared_ptr<pugi::xml_document> ReadDocument(const std::string& path,
                                                 const std::string& default_file,
                                                 const std::string& root, std::ostream& err) {
  const std::string file = DocumentPath(path, default_file);
  auto document = std::make_shared<pugi::xml_document>();
  const app::XmlLoadResult loaded = app::LoadXmlFile(file, *document, root);
  if (!loaded) {
    err << "kolvane: error: " << loaded.description() << '\n';
    return nullptr;
  }
  return document;
}

bool WriteFileAtomically(const std::string& path, const std::string& text, std::ostream& err) {
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
