// The operations, each step and whole conversions in process, on files that bench/generate wrote into the folder named
// by TOLVANE_BENCH_FILES.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "document/entries.h"
#include "document/fields.h"
#include "document/files.h"
#include "document/forget.h"
#include "ladder/convertconfig.h"
#include "ladder/ladder.h"
#include "legacy/merge.h"

namespace tolvane {

namespace {

std::string pathof(const std::string& name) {
  const char* const folder = std::getenv("TOLVANE_BENCH_FILES");
  if (folder == nullptr) std::abort();
  return std::string(folder) + "/" + name;
}

std::string sizename(benchmark::State& state) { return "realistic-" + std::to_string(state.range(0)); }

void loadfrom(const std::string& path) {
  Lock lock{path.c_str()};
  Original original = Original::opened(lock, path.c_str());
  load(original);
}

void given(const std::string& name) {
  forget();
  loadfrom(pathof(name));
}

void loading(benchmark::State& state) {
  const std::string path = pathof(sizename(state));
  for (auto _ : state) {
    loadfrom(path);
    state.PauseTiming();
    forget();
    state.ResumeTiming();
  }
}
BENCHMARK(loading)->Name("load")->Arg(3000)->Arg(100000);

void saving(benchmark::State& state) {
  given(sizename(state));
  const std::string path = pathof("saved");
  if (std::FILE* const file = std::fopen(path.c_str(), "w")) (void)std::fclose(file);
  Lock lock{path.c_str()};
  const Original original = Original::replaced(lock, path.c_str());
  for (auto _ : state) save(original);
}
BENCHMARK(saving)->Name("save")->Arg(3000)->Arg(100000);

void finding(benchmark::State& state, const char* section, const char* key) {
  given(sizename(state));
  for (auto _ : state) benchmark::DoNotOptimize(find(section, key));
}
BENCHMARK_CAPTURE(finding, first, "[ConfigFile]", "Version")->Name("find/first")->Arg(3000)->Arg(100000);
BENCHMARK_CAPTURE(finding, last, "[NspMap.NS29]", "GloMap_1")->Name("find/last")->Arg(3000);
BENCHMARK_CAPTURE(finding, missing, "[Missing]", "key")->Name("find/missing")->Arg(3000)->Arg(100000);

void adding(benchmark::State& state) {
  given(sizename(state));
  for (auto _ : state) {
    saveentry("[Startup]", "added", "1");
    state.PauseTiming();
    delentry("[Startup]", "added");
    state.ResumeTiming();
  }
}
BENCHMARK(adding)->Name("saveentry")->Arg(3000);

void replacing(benchmark::State& state) {
  Text value{"/zpg/sys,sys,1,0,,28800,1,,%SYS,1,,,%zpgapp,/zpg/sys/,1,0,,%Application/ZPG/zpg/sys,1"};
  for (auto _ : state) {
    setfield(value, 14, ',', "/zpg/other/");
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(replacing)->Name("replacefield");

/// A conversion on a fresh copy of a file each time.
void converting(benchmark::State& state, const std::string& name, void (*convert)()) {
  for (auto _ : state) {
    state.PauseTiming();
    given(name);
    state.ResumeTiming();
    convert();
  }
}

void wholeladder(benchmark::State& state) {
  converting(state, sizename(state), [] { convertconfig("3.11"); });
}
BENCHMARK(wholeladder)->Name("ladder")->Arg(300)->Arg(3000)->Arg(100000);

void cleaningmappings(benchmark::State& state) {
  for (const Step& step : ladder) {
    if (step.version == "5.41") converting(state, "mappings-" + std::to_string(state.range(0)), step.apply);
  }
}
BENCHMARK(cleaningmappings)->Name("mappings")->Arg(10000)->Arg(20000);

void merging(benchmark::State& state) {
  const std::string network = "legacy-globals-" + std::to_string(state.range(0));
  for (auto _ : state) {
    forget();
    merge(pathof("merged").c_str(), pathof("system").c_str(), pathof(network).c_str());
  }
}
BENCHMARK(merging)->Name("merge")->Arg(10000);

/// Each step alone, on a file as the steps before it leave it.
void registersteps() {
  for (const Step& step : ladder) {
    const std::string version{step.version};
    benchmark::RegisterBenchmark(("step/" + version).c_str(),
                                 [&step](benchmark::State& state) {
                                   for (auto _ : state) {
                                     state.PauseTiming();
                                     given("realistic-100000");
                                     for (const Step& before : ladder) {
                                       if (&before == &step) break;
                                       before.apply();
                                     }
                                     state.ResumeTiming();
                                     step.apply();
                                   }
                                 })
        ->Iterations(3)
        ->Unit(benchmark::kMicrosecond);
  }
}

}  // namespace

}  // namespace tolvane

int main(int count, char** words) {
  tolvane::registersteps();
  benchmark::Initialize(&count, words);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
