// Loading, showing and saving whole profiles of 1,000 to 100,000 items, beside pugixml alone
// parsing and writing the same documents. Results and ratios: docs/performance.md.
//   cmake --preset release && cmake --build --preset release --target kolvane_bench
//   ./build/release/bench/kolvane_bench --benchmark_filter=Profile

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "Kolvane.h"
#include "foundation/Globals.h"

// Every allocation through operator new is counted (pugixml allocates with malloc, so a parsed
// document is not): the bytes a profile holds beyond its document.
namespace {
std::atomic<int64_t> live_bytes{0};

void* Allocate(size_t size) {
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  live_bytes += static_cast<int64_t>(malloc_usable_size(memory));
  return memory;
}

void Release(void* memory) noexcept {
  if (memory == nullptr) return;
  live_bytes -= static_cast<int64_t>(malloc_usable_size(memory));
  std::free(memory);
}
}  // namespace

void* operator new(size_t size) { return Allocate(size); }
void* operator new[](size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { Release(memory); }
void operator delete[](void* memory) noexcept { Release(memory); }
void operator delete(void* memory, size_t) noexcept { Release(memory); }
void operator delete[](void* memory, size_t) noexcept { Release(memory); }

namespace kolvane {
namespace {

// One variable element per kind, structures (nested too) and type overrides included.
struct VariableKind {
  const char* type;
  const char* direction;
  const char* type_override;  // inside ExtendedInfo
};

constexpr VariableKind kVariables[] = {
    {"temp_p", "In", ""},
    {"temp", "Out", ""},
    {"temp_f", "Out", "<TypeOverride Type=\"Float\"/>"},
    {"occupancy", "In",
     "<TypeOverride Type=\"Enum\"><States><State Name=\"OC_OCCUPIED\" Value=\"0\"/>"
     "<State Name=\"OC_UNOCCUPIED\" Value=\"1\"/></States></TypeOverride>"},
    {"str_asc", "Out", ""},
    {"state", "Out", ""},
    {"switch", "Out",
     "<TypeOverride Type=\"Struct\"><Fields><Field Name=\"state\" Type=\"Enum\"><States>"
     "<State Name=\"OFF\" Value=\"0\"/><State Name=\"ON\" Value=\"1\"/></States></Field>"
     "</Fields></TypeOverride>"},
    {"temp_setpt", "In", ""},
    {"hvac_status", "Out", ""},
    {"40002", "In", ""},
};

// The children of one property element per kind.
constexpr const char* kProperties[] = {
    "<SNVTType>temp_p</SNVTType><Default>21.5</Default><Min>10</Min><Max>30</Max>",
    "<SNVTType>time_sec</SNVTType><Default>60</Default>",
    "<SNVTType>lev_cont_f</SNVTType><Default>50</Default>",
    "<SNVTType>hvac_type</SNVTType><Default>1</Default>",
    "<SNVTType>str_asc</SNVTType><Default>Room 101</Default>",
    "<SNVTType>state</SNVTType><Default>0</Default>",
    "<SNVTType>temp_setpt</SNVTType><occupied_cool><Value>23</Value></occupied_cool>"
    "<occupied_heat><Value>21.5</Value></occupied_heat>",
    "<SNVTType>switch</SNVTType><value><Value>100</Value></value>"
    "<state><Value>TOGGLE_ON</Value></state>",
};

// A profile document of count items: three variables for every two properties.
std::string ProfileText(int count) {
  std::string nvs;
  std::string cps;
  size_t variables = 0;
  size_t properties = 0;
  for (int i = 0; i < count; ++i) {
    const std::string n = std::to_string(i);
    if (i % 5 < 3) {
      const VariableKind& kind = kVariables[variables++ % std::size(kVariables)];
      const std::string name = std::string(kind.direction[0] == 'I' ? "nvi" : "nvo") + "Item" + n;
      nvs += "<" + name + " Type=\"" + kind.type + "\" Direction=\"" + kind.direction +
             "\" Key=\"P" + std::to_string(i + 1) + "\"><ExtendedInfo Location=\"" +
             std::to_string(i % 40 * 20) + ";" + std::to_string(i / 40 * 20) + "\" ExportIndex=\"" +
             n + "\">" + kind.type_override + "</ExtendedInfo></" + name + ">\n";
    } else {
      const std::string name = "nciItem" + n;
      cps += "<" + name + ">" + kProperties[properties++ % std::size(kProperties)] + "</" + name +
             ">\n";
    }
  }
  return "<Profile><Name>Bench" + std::to_string(count) + "</Name>\n<NVs>\n" + nvs +
         "</NVs>\n<CPs>\n" + cps + "</CPs></Profile>\n";
}

std::shared_ptr<pugi::xml_document> Parsed(const std::string& text) {
  auto document = std::make_shared<pugi::xml_document>();
  document->load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_comments);
  return document;
}

std::shared_ptr<pugi::xml_document> FromFile(const char* path) {
  auto document = std::make_shared<pugi::xml_document>();
  document->load_file(path, pugi::parse_default | pugi::parse_comments);
  return document;
}

// The bundled documents, and message boxes silenced (the switch fields warn of their defaults).
struct Environment {
  Environment() {
    SetMessageBoxHandler([](const std::string&, int32_t, const std::string&) { return vbOK; });
  }
  std::shared_ptr<pugi::xml_document> catalogue =
      FromFile(KOLVANE_SOURCE_DIR "/examples/snvts.xml");
  std::shared_ptr<pugi::xml_document> nvo_table =
      FromFile(KOLVANE_SOURCE_DIR "/examples/nvotable.xml");
};

Environment& Env() {
  static Environment environment;
  return environment;
}

std::shared_ptr<IProfile> Load(const std::shared_ptr<pugi::xml_document>& document) {
  auto profile = CreateProfile();
  profile->Iprofile_SetXmlDomDocs(Env().catalogue, Env().nvo_table);
  std::string name;
  profile->IProfile_FriendSet(document, name, nullptr, Env().catalogue, Env().nvo_table, "");
  return profile;
}

void Finish(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

void BM_ProfileParseXml(benchmark::State& state) {
  const std::string text = ProfileText(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    pugi::xml_document document;
    benchmark::DoNotOptimize(
        document.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_comments));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
  Finish(state);
}

void BM_ProfileLoad(benchmark::State& state) {
  const auto document = Parsed(ProfileText(static_cast<int>(state.range(0))));
  for (auto _ : state) {
    auto profile = Load(document);
    benchmark::DoNotOptimize(profile->IProfile_NumberCPs());
    state.PauseTiming();  // releasing the items is left out of the time
    profile.reset();
    state.ResumeTiming();
  }
  Finish(state);
}

void BM_ProfileDisplayTexts(benchmark::State& state) {
  const auto document = Parsed(ProfileText(static_cast<int>(state.range(0))));
  const auto profile = Load(document);
  const auto nvs = profile->IProfile_NVs()->INetworkVariables_NewEnum();
  const auto cps = profile->IProfile_CPs()->IConfigProperties_NewEnum();
  for (auto _ : state) {
    size_t length = 0;
    for (const auto& nv : nvs) {
      length += nv->INetworkVariable_DispValue().size() +
                nv->INetworkVariable_DispDefault().size() + nv->INetworkVariable_DispMin().size() +
                nv->INetworkVariable_DispMax().size();
    }
    for (const auto& cp : cps) {
      length += cp->IConfigProperty_DispValue().size() + cp->IConfigProperty_DispDefault().size() +
                cp->IConfigProperty_DispMin().size() + cp->IConfigProperty_DispMax().size();
    }
    benchmark::DoNotOptimize(length);
  }
  Finish(state);
}

// What check finds in every item and field: the studio's panes run it after every edit.
void BM_ProfileCheckItems(benchmark::State& state) {
  const auto document = Parsed(ProfileText(static_cast<int>(state.range(0))));
  const auto profile = Load(document);
  const auto nvs = profile->IProfile_NVs()->INetworkVariables_NewEnum();
  const auto cps = profile->IProfile_CPs()->IConfigProperties_NewEnum();
  for (auto _ : state) {
    size_t findings = 0;
    for (const auto& nv : nvs) findings += CheckItem(nv, nv->INetworkVariable_Name()).size();
    for (const auto& cp : cps) findings += CheckItem(cp, cp->IConfigProperty_Name()).size();
    benchmark::DoNotOptimize(findings);
  }
  Finish(state);
}

template <bool kInteroperability>
void BM_ProfileSave(benchmark::State& state) {
  const auto document = Parsed(ProfileText(static_cast<int>(state.range(0))));
  const auto profile = Load(document);
  for (auto _ : state) {
    pugi::xml_document saved;
    pugi::xml_node root = saved.append_child("Device");
    benchmark::DoNotOptimize(kInteroperability
                                 ? profile->Iprofile_SaveValueForInteroperability(root, saved)
                                 : profile->Iprofile_XmlSaveValue(root, saved));
  }
  Finish(state);
}

void BM_ProfileWriteSavedXml(benchmark::State& state) {
  const auto document = Parsed(ProfileText(static_cast<int>(state.range(0))));
  const auto profile = Load(document);
  pugi::xml_document saved;
  profile->Iprofile_XmlSaveValue(saved.append_child("Device"), saved);
  for (auto _ : state) {
    std::ostringstream text;
    saved.save(text, "  ", pugi::format_indent);
    benchmark::DoNotOptimize(text.str().size());
  }
  Finish(state);
}

// One input whose type count outputs list (an NVO table of count outputs), loaded with its
// compatible list: the list's building must grow linearly with its length.
void BM_ProfileWideCompatibleList(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  std::string table = "<NVOTable>";
  for (int i = 0; i < count; ++i) {
    table += "<SNVT_out" + std::to_string(i) + "><SNVT_temp_p/></SNVT_out" + std::to_string(i) + ">";
  }
  const auto nvo_table = Parsed(table + "</NVOTable>");
  const auto document = Parsed(
      "<Profile><Name>Wide</Name><NVs><nviTemp Type=\"temp_p\" Direction=\"In\" Key=\"P1\"/>"
      "</NVs></Profile>");
  for (auto _ : state) {
    auto profile = CreateProfile();
    profile->Iprofile_SetXmlDomDocs(Env().catalogue, nvo_table);
    std::string name;
    profile->IProfile_FriendSet(document, name, nullptr, Env().catalogue, nvo_table, "");
    benchmark::DoNotOptimize(profile->IProfile_NVs()
                                 ->INetworkVariables_Item("1")
                                 ->INetworkVariable_SNVTCompatibles()
                                 ->ICompatibleSNVTs_Count());
  }
  Finish(state);
}

// count items added one by one under one name: each gets a unique name ("x_1", "x_2", ...).
void BM_ProfileAddItems(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    auto profile = CreateProfile();
    profile->Iprofile_SetXmlDomDocs(Env().catalogue, Env().nvo_table);
    for (int i = 0; i < count; ++i) {
      profile->Iprofile_AddNetworkItem(3, "temp_p", "x", 0, nullptr, "");
    }
    benchmark::DoNotOptimize(profile->IProfile_NumberCPs());
  }
  Finish(state);
}

// count inputs of one structure type (the widest single case: one type, many items).
void BM_ProfileOneType(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  std::string nvs;
  for (int i = 0; i < count; ++i) {
    nvs += "<nvi" + std::to_string(i) + " Type=\"temp_setpt\" Direction=\"In\" Key=\"P" +
           std::to_string(i + 1) + "\"/>";
  }
  const auto document = Parsed("<Profile><Name>One</Name><NVs>" + nvs + "</NVs></Profile>");
  for (auto _ : state) {
    auto profile = Load(document);
    benchmark::DoNotOptimize(profile->IProfile_NumberNVIs());
    state.PauseTiming();
    profile.reset();
    state.ResumeTiming();
  }
  Finish(state);
}

BENCHMARK(BM_ProfileOneType)->Arg(10000)->Arg(30000)->Arg(100000)->Iterations(2)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_ProfileWideCompatibleList)->Arg(1000)->Arg(5000)->Arg(10000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_ProfileAddItems)->Arg(1000)->Arg(5000)->Arg(10000)->Unit(benchmark::kMillisecond)->Complexity();

// The bytes a loaded profile holds per item beyond its parsed document (counted allocations).
void BM_ProfileMemory(benchmark::State& state) {
  const auto document = Parsed(ProfileText(static_cast<int>(state.range(0))));
  Load(document);  // the catalogue's caches are made by the first load, not counted per item
  int64_t held = 0;
  for (auto _ : state) {
    const int64_t before = live_bytes;
    auto profile = Load(document);
    held = live_bytes - before;
    benchmark::DoNotOptimize(profile->IProfile_NumberCPs());
    state.PauseTiming();
    profile.reset();
    state.ResumeTiming();
  }
  state.counters["bytes_per_item"] = static_cast<double>(held) / static_cast<double>(state.range(0));
  Finish(state);
}

BENCHMARK(BM_ProfileMemory)->Arg(1000)->Arg(10000)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

// Small sizes repeat for a stable figure; one round of the largest takes seconds already.
#define PROFILE_BENCHMARK(...)                                                  \
  BENCHMARK(__VA_ARGS__)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond); \
  BENCHMARK(__VA_ARGS__)->Arg(100000)->Iterations(2)->Unit(benchmark::kMillisecond)

PROFILE_BENCHMARK(BM_ProfileParseXml);
PROFILE_BENCHMARK(BM_ProfileLoad);
PROFILE_BENCHMARK(BM_ProfileDisplayTexts);
PROFILE_BENCHMARK(BM_ProfileCheckItems);
PROFILE_BENCHMARK(BM_ProfileSave<false>);
PROFILE_BENCHMARK(BM_ProfileSave<true>);
PROFILE_BENCHMARK(BM_ProfileWriteSavedXml);

}  // namespace
}  // namespace kolvane
