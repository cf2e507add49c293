#include "Documents.h"

#include <filesystem>

#include "XmlFile.h"
#include "foundation/Globals.h"

namespace kolvane::cli {

namespace {

std::string ExecutableFolder() {
  std::error_code ec;
  const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.parent_path().string();
}

}  // namespace

std::string BundledExample(const std::string& file_name) {
  const std::filesystem::path installed =
      std::filesystem::path(ExecutableFolder()) / ".." / "share" / "kolvane" / file_name;
  std::error_code ec;
  if (std::filesystem::is_regular_file(installed, ec)) return installed.lexically_normal();
  return std::string(KOLVANE_SOURCE_EXAMPLES) + "/" + file_name;
}

std::string DocumentPath(const std::string& path, const std::string& default_file) {
  return path.empty() ? BundledExample(default_file) : path;
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

bool UseCatalogue(const std::string& path, std::ostream& err) {
  auto document = ReadDocument(path, "snvts.xml", "SNVTS", err);
  if (!document) return false;
  Globals::SetSnvtCatalogDocument(document);
  return true;
}

}  // namespace kolvane::cli
