#include "results/ResultSort.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

ResultRow row(std::string name, std::uint64_t matches, std::uint64_t size, std::time_t modified,
              std::string folder = "/f/") {
    return ResultRow{std::move(name), std::move(folder), matches, size, modified, false};
}

std::vector<std::string> namesInOrder(const std::vector<ResultRow>& rows, std::size_t column, bool descending) {
    std::vector<std::size_t> order(rows.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    sortRowOrder(order, rows, column, descending);
    std::vector<std::string> names;
    for (std::size_t i : order) names.push_back(rows[i].name);
    return names;
}

TEST(ResultSort, NumbersAndDatesSortByValueNotAsText) {
    const std::vector<ResultRow> rows = {row("a", 10, 9, 0), row("b", 9, 100, 0), row("c", 100, 10, 0)};
    EXPECT_EQ(namesInOrder(rows, 3, false), (std::vector<std::string>{"a", "c", "b"}));  // sizes 9 10 100
    EXPECT_EQ(namesInOrder(rows, 3, true), (std::vector<std::string>{"b", "c", "a"}));
    EXPECT_EQ(namesInOrder(rows, 2, false), (std::vector<std::string>{"b", "a", "c"}));  // matches 9 10 100

    // 2001-09-09 sorts after 1999-12-31 even though "1" < "9" would say otherwise as plain numbers' text.
    const std::vector<ResultRow> dated = {row("late", 1, 1, 1000000000), row("early", 1, 1, 946598400),
                                          row("first", 1, 1, 86400)};
    EXPECT_EQ(namesInOrder(dated, 4, false), (std::vector<std::string>{"first", "early", "late"}));
    EXPECT_EQ(namesInOrder(dated, 4, true), (std::vector<std::string>{"late", "early", "first"}));
}

TEST(ResultSort, TextIgnoresCaseAndEqualRowsKeepTheirOrder) {
    const std::vector<ResultRow> rows = {row("beta", 1, 1, 0, "/x/"), row("Alpha", 2, 1, 0, "/y/"),
                                         row("alpha", 3, 1, 0, "/x/"), row("Gamma", 4, 1, 0, "/x/")};
    EXPECT_EQ(namesInOrder(rows, 0, false), (std::vector<std::string>{"Alpha", "alpha", "beta", "Gamma"}));
    EXPECT_EQ(namesInOrder(rows, 0, true), (std::vector<std::string>{"Gamma", "beta", "alpha", "Alpha"}));
    EXPECT_EQ(namesInOrder(rows, 1, false), (std::vector<std::string>{"beta", "alpha", "Gamma", "Alpha"}));
    EXPECT_THROW(namesInOrder(rows, 9, false), std::out_of_range);
}

TEST(ResultSort, FirstClickSortsDescendingAndEachColumnKeepsItsOwnDirection) {
    SortDirections directions;
    EXPECT_TRUE(directions.toggle(0));
    EXPECT_FALSE(directions.toggle(0));
    EXPECT_TRUE(directions.toggle(3));
    EXPECT_TRUE(directions.toggle(0));
    EXPECT_FALSE(directions.toggle(3));
}

}  // namespace
}  // namespace vantorel
