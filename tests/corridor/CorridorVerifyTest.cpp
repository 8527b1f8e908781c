#include "corridor/CorridorVerify.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

/// "a, b: 1 / 2", or "same" and how many values were compared.
std::string Compared(const char* reported, const char* computed) {
    std::size_t count = 0;
    const auto found = FirstDifference(Json::parse(reported), Json::parse(computed), count);
    if (!found) return "same " + std::to_string(count);
    return found->Place + ": " + found->Reported + " / " + found->Computed;
}

TEST(CorridorVerifyTest, NamesTheFirstFigureThatDiffers) {
    EXPECT_EQ(Compared(R"({"a":1,"b":[null,"x",true]})", R"({"b":[null,"x",true],"a":1.0000000001})"), "same 4");
    EXPECT_EQ(Compared(R"({"a":1})", R"({"a":1.00000001})"), "a: 1 / 1.00000001");
    EXPECT_EQ(Compared(R"({"a":0})", R"({"a":1e-12})"), "a: 0 / 1e-12") << "nothing is near nothing";
    EXPECT_EQ(Compared(R"({"a":null})", R"({"a":0})"), "a: null / 0");
    EXPECT_EQ(Compared(R"({"a":"1"})", R"({"a":1})"), "a: \"1\" / 1");
    EXPECT_EQ(Compared(R"({"stop_delay":{"n":1}})", R"({"stop_delay":{}})"), "stop delay, n: 1 / nothing");
    EXPECT_EQ(Compared(R"([1])", R"([1,{"name":"Oak"}])"), R"(Oak: nothing / {"name":"Oak"})");
    EXPECT_EQ(Compared(R"([{"from":"A","to":"B","n":1}])", R"([{"from":"A","to":"B","n":2}])"), "A to B, n: 1 / 2");
    EXPECT_EQ(Compared(R"([{"period":null,"n":1},{"period":"AM","n":1}])",
                       R"([{"period":null,"n":1},{"period":"AM","n":2}])"),
              "period \"AM\", n: 1 / 2");
}

}  // namespace
}  // namespace vantor
