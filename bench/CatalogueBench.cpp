// Type loading: a lookup must cost the same in a small and in a large catalogue.
//   cmake --preset release && cmake --build --preset release --target kolvane_bench
//   ./build/release/bench/kolvane_bench

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "foundation/Globals.h"
#include "types/CSNVTType.h"
#include "types/SnvtCatalogue.h"

namespace kolvane {
namespace {

// A catalogue of count numeric types plus one enumeration at the very end.
std::shared_ptr<pugi::xml_document> SyntheticCatalogue(int count) {
  std::string xml = "<SNVTS>";
  for (int i = 0; i < count; ++i) {
    const std::string id = "t" + std::to_string(i);
    xml += "<SNVT_" + id + " FACTOR=\"1\"><NAME>" + id +
           "</NAME><TYPE>SignedNumeric</TYPE><LENGTH>2</LENGTH><A_COEF>1</A_COEF>"
           "<B_COEF>-2</B_COEF><C_COEF>0</C_COEF><MIN>-273.17</MIN><MAX>327.66</MAX></SNVT_" +
           id + ">";
  }
  xml +=
      "<SNVT_last><NAME>last</NAME><TYPE>Enum</TYPE><Enums><OFF>0</OFF><ON>1</ON></Enums>"
      "</SNVT_last></SNVTS>";
  auto document = std::make_shared<pugi::xml_document>();
  document->load_string(xml.c_str());
  return document;
}

// Loading the last type of a catalogue of state.range(0) types.
void BM_LoadLastType(benchmark::State& state) {
  Globals::SetSnvtCatalogDocument(SyntheticCatalogue(static_cast<int>(state.range(0))));
  for (auto _ : state) {
    CSNVTType type;
    type.Load("last");
    benchmark::DoNotOptimize(type.ISNVType_EnumDesc());
  }
}
BENCHMARK(BM_LoadLastType)->Arg(100)->Arg(10000);

// Building the index once after a catalogue of state.range(0) types is handed in.
void BM_IndexCatalogue(benchmark::State& state) {
  auto document = SyntheticCatalogue(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    Globals::SetSnvtCatalogDocument(document);
    benchmark::DoNotOptimize(internal::FindSnvtElement("last"));
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_IndexCatalogue)->Arg(100)->Arg(10000)->Complexity(benchmark::oN);

// Loading every type of the bundled catalogue.
void BM_LoadBundledCatalogue(benchmark::State& state) {
  auto document = std::make_shared<pugi::xml_document>();
  document->load_file(KOLVANE_SOURCE_DIR "/examples/snvts.xml");
  Globals::SetSnvtCatalogDocument(document);
  const auto ids = internal::SnvtIdentifiers();
  for (auto _ : state) {
    for (const auto& id : ids) {
      CSNVTType type;
      type.Load(id);
      benchmark::DoNotOptimize(type.ISNVType_Length());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(ids.size()));
}
BENCHMARK(BM_LoadBundledCatalogue);

}  // namespace
}  // namespace kolvane
