#pragma once

#include <string>

namespace journeys {

/// The tables of docs/desktops.md, one for each kind of set-up.
enum class TableGroup { displays, scales, colors, windows, windowManagers, input };

/// One row of the tables of docs/desktops.md, written by the test that proves it.
///
/// Lives around the checks of the row. When it ends, the row is noted with `result`, or with
/// "FAILED" when a check has failed since; a skipped test notes nothing. What is noted goes to
/// LUMAFRAME_DESKTOPS_TABLE_DIRECTORY, from where scripts/make-desktops-table takes it.
class TableRow {
  public:
    struct Text {
        /// The desktop, without the group's word: "Laptop below an external display".
        std::string setUp;
        /// What was compared with what.
        std::string tested;
        /// What holds when every check passes. The same in each run: no times, no random numbers.
        std::string result = "exact";
    };

    TableRow(TableGroup group, Text text);
    ~TableRow();
    TableRow(const TableRow&) = delete;
    TableRow& operator=(const TableRow&) = delete;

  private:
    TableGroup group_;
    Text text_;
    int exceptionsBefore_;
    int failuresBefore_;
};

}  // namespace journeys
