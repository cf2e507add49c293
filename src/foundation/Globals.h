#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <pugixml.hpp>

// Shared state of the loaded profile and the small helpers every subsystem uses. One set per
// thread: each thread is its own apartment. None of this is visible to a host.
namespace kolvane::Globals {

// Component folder + "/profile.ini"; set at profile creation.
extern thread_local std::string IniFilePath;
// "CP_SISD_Required" of section "Globals" in the settings file; kept for the property code.
extern thread_local bool CpSisdRequired;
// The user's decimal separator, "," or "."; set at profile creation.
extern thread_local std::string DecimalSeparator;
// The other one of "," and ".".
extern thread_local std::string AlternateSeparator;
// The profile holds changes that have not been saved.
extern thread_local bool NeedSaveFlag;
// An item was removed since the last save: the host must redraw its incompatible items.
extern thread_local bool DisplayIncompatibleFlag;
// The type catalogue ("snvts.xml") handed in by the host; hand it in with
// SetSnvtCatalogDocument so that type lookups see the new document.
extern thread_local std::shared_ptr<pugi::xml_document> SnvtCatalogDocument;
// The profile document handed in by the host.
extern thread_local std::shared_ptr<pugi::xml_document> ProfileDocument;

// Makes document the type catalogue and drops every index built on the previous one, also when
// it is the same object. Lookups read a copy taken after the hand-in: a host that changes or
// reloads a catalogue in place hands it in again to be seen.
void SetSnvtCatalogDocument(std::shared_ptr<pugi::xml_document> document);

// Counts the catalogues handed in, so that indexes know when to rebuild.
uint64_t SnvtCatalogGeneration();

// The value of key in section of a settings file: "" when the file, section or key is missing;
// the part before a "/" comment, trimmed, when there is one; else the value as it stands.
// At most 4095 characters are read.
std::string GetIniValue(const std::string& file, const std::string& section,
                        const std::string& key);

// The index-th token (0-based) of text split at separator; "" for any miss, and "" for token 0
// of a text without separator.
std::string GetToken(const std::string& text, int32_t index, const std::string& separator);

// Two upper-case hexadecimal digits of value; a value above 255 becomes 255, also in the
// caller's variable, and a negative one gives its low byte.
std::string ByteToHex(int32_t& value);

// DecimalSeparator as a character ("." while it is unset).
char DecimalPoint();

// Sets DecimalSeparator and AlternateSeparator from the user's locale.
void DetectDecimalSeparator();

// Sets IniFilePath from the component folder and CpSisdRequired from the settings file.
void ReadSettings();

}  // namespace kolvane::Globals
