#pragma once

#include <cstddef>

#include "platform/png/deflater.h"
#include "platform/png/row_filter.h"

namespace platform::png {

/// Finds the filter that suits a band of rows by trying each on a few strips of it: less than a
/// tenth of the work. Uses the filter and the deflater that it is given, which must outlive it.
class FilterTrial {
  public:
    FilterTrial(RowFilter& rows, Deflater& deflater) : rows_(rows), deflater_(deflater) {}

    /// No filter for texts and whatever else repeats itself; for pictures the differences from the
    /// row above, or from the mean of that and the left, whichever vary less.
    Filter choose(RowRange band);

  private:
    /// Repeats itself, is nearly nothing but surfaces, or neither.
    enum class Content { repeated, bare, varied };
    Content contentOf(RowRange band);
    std::size_t compressedSize(RowRange strip, Filter filter);
    double entropy(RowRange band, Filter filter);
    template <typename Take>
    void filterAll(RowRange strip, Filter filter, Take take);

    RowFilter& rows_;
    Deflater& deflater_;
};

}  // namespace platform::png
