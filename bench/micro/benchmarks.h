#pragma once

/// Each adds its benchmarks to Google Benchmark's list.
namespace bench {

/// A 4K picture of each kind by our PNG writer and by others; the counter `bytes` is the file's
/// size.
void registerPngBenchmarks();

/// What runs between an event and its answer, and the page analysis of a megapixel.
void registerDecisionBenchmarks();

}  // namespace bench
