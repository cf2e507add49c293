#include <cstdlib>

#include "Commands.h"

#include "Documents.h"
#include "Json.h"
#include "Table.h"
#include "foundation/HostServices.h"
#include "foundation/mXML.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane::cli {

namespace {

std::string Coefficients(const CSNVTType& type) {
  if (type.ISNVType_LUIType() != "Numeric") return "";
  return std::to_string(type.ISNVType_ACoef()) + "," + std::to_string(type.ISNVType_BCoef()) + "," +
         std::to_string(type.ISNVType_CCoef());
}

std::string Range(const CSNVTType& type) {
  if (type.ISNVType_Min().empty() && type.ISNVType_Max().empty()) return "";
  return type.ISNVType_Min() + " .. " + type.ISNVType_Max();
}

// The states of an enumeration, or the fields of a structure as the catalogue lists them.
std::string Note(const CSNVTType& type) {
  std::string note;
  if (type.Kind() == TypeKind::kStruct) {
    for (pugi::xml_node field : internal::FindSnvtChild(type.ISNVType_ID(), "Fields").children()) {
      if (field.type() != pugi::node_element) continue;
      note += (note.empty() ? "" : " ") + std::string(mXML::BaseName(field)) + "(" +
              field.child_value() + ")";
    }
    return note.empty() ? "" : "fields: " + note;
  }
  for (const std::string& state : type.StateTexts()) note += (note.empty() ? "" : " ") + state;
  return note.empty() ? "" : "states: " + note;
}

// Bytes of a value of the type: a structure's as its catalogue element declares them (the type
// object of a structure reads none), empty when it declares none.
std::string Bytes(const CSNVTType& type) {
  if (type.Kind() != TypeKind::kStruct) return std::to_string(type.ISNVType_Length());
  const auto declared = internal::DeclaredLength(type.ISNVType_ID());
  return declared ? std::to_string(*declared) : "";
}

}  // namespace

int RunTypes(const TypesOptions& options, std::ostream& out, std::ostream& err) {
  if (!UseCatalogue(options.common.catalogue, err)) return 1;
  const std::string path = DocumentPath(options.common.catalogue, "snvts.xml");

  // Catalogue problems found while reading types are reported, not fatal.
  Session session(options.common, err);
  int status = 0;
  std::vector<std::string> ids = options.ids;
  // "SNVT_temp_p" names temp_p.
  for (std::string& id : ids) {
    if (id.rfind("SNVT_", 0) == 0) id.erase(0, 5);
  }
  if (ids.empty()) ids = internal::SnvtIdentifiers();
  std::vector<CSNVTType> loaded;
  loaded.reserve(ids.size());
  Table table({"ID", "Kind", "Bytes", "A,B,C", "Range", "Invalid", "Unit", "BACnet unit"});
  for (const std::string& id : ids) {
    if (!internal::FindSnvtElement(id)) {
      err << "kolvane: error: " << path << ": no type SNVT_" << id << '\n';
      status = 1;
      continue;
    }
    CSNVTType& type = loaded.emplace_back();
    type.Load(id);
    table.AddRow(
        {type.ISNVType_ID(), type.ISNVType_GenType(), Bytes(type), Coefficients(type), Range(type),
         type.ISNVType_InvalidValue(), type.ISNVType_Units(), type.ISNVType_BACnetUnits()},
        Note(type));
  }
  if (options.common.json) {
    JsonWriter json(out);
    json.BeginObject().Key("types").BeginArray();
    for (const CSNVTType& type : loaded) {
      json.BeginObject()
          .Member("id", type.ISNVType_ID())
          .Member("kind", type.ISNVType_GenType())
          .Key("length")
          .Number(std::atoi(Bytes(type).c_str()))
          .Key("a")
          .Number(type.ISNVType_ACoef())
          .Key("b")
          .Number(type.ISNVType_BCoef())
          .Key("c")
          .Number(type.ISNVType_CCoef())
          .Member("min", type.ISNVType_Min())
          .Member("max", type.ISNVType_Max())
          .Member("invalid", type.ISNVType_InvalidValue())
          .Member("unit", type.ISNVType_Units())
          .Member("bacnetUnit", type.ISNVType_BACnetUnits())
          .Member("note", Note(type))
          .EndObject();
    }
    json.EndArray();
    WriteMessages(json, session.messages());
    json.EndObject();
    return status;
  }
  table.Print(out);
  return status;
}

}  // namespace kolvane::cli
