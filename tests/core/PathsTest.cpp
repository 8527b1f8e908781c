#include "core/Paths.h"

#include <gtest/gtest.h>

#include "fakes/MemoryFileSystem.h"

namespace vantor {
namespace {

TEST(Paths, IncrementsOnlyTheLastCharacter) {
    const std::pair<const char*, const char*> cases[] = {{"X-1", "X-2"},    {"X-9", "X-10"},    {"X-10", "X-11"},
                                                         {"X-19", "X-110"}, {"X-110", "X-111"}, {"X", "1"},
                                                         {"", "1"}};
    for (const auto& [name, next] : cases) EXPECT_EQ(NextName(name), next) << name;
}

TEST(Paths, RefusesNamesThatLeaveTheirFolder) {
    for (const char* name : {"", "  ", ".", "..", "a/b", "a\\b", "C:x", "../x", "a..b", "a\nb", "a*", "a?", "a|b",
                             "\"a\"", ".5", ".hidden", "con", "NUL.x", "Lpt9 .a"})
        EXPECT_FALSE(IsSafeName(name)) << name;
    for (const char* name : {"Main St-NB-001", "S001R001-SITE    -1", "a.b", "\u00c9cole", "Console", "COM0", "a.con"})
        EXPECT_TRUE(IsSafeName(name)) << name;
    for (const auto& [name, safe] : {std::pair{"S001-A/B:C", "S001-A_B_C"}, {".5", "_5"}, {"Nul.x", "_Nul.x"}})
        EXPECT_EQ(WithSafeCharacters(name), safe);
}

TEST(Paths, NamesMustBeStoredWhole) {
    for (const char* name : {"12345678", "\u00c9cole \u20ac1"}) EXPECT_EQ(NameProblem(name, 8), "") << name;
    for (const char* name : {"123456789", " a", "a ", "\u03a9mega", "a/b", ""})
        EXPECT_NE(NameProblem(name, 8), "") << name;
}

TEST(Paths, ListsTheFilesOfAKind) {
    MemoryFileSystem files;
    for (const char* path : {"/g/b.RD2", "/g/a.rdf"}) files.PutText(path, "");
    files.CreateFolder("/g/c.rd2");
    const auto found = FilesWithExtension(files, "/g", ".rd2");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].Name, "b.RD2");
    EXPECT_TRUE(FilesWithExtension(files, "/none", ".rd2").empty());
}

TEST(Paths, PathsFromTheRootOn) {
    MemoryFileSystem files;  // whose current folder is /start
    for (const auto& [path, whole] : {std::pair{"", "/start"},
                                      {".", "/start"},
                                      {"..", "/"},
                                      {"../..", "/"},
                                      {"a/./b//../c/", "/start/a/c"},
                                      {"/x/../y", "/y"}})
        EXPECT_EQ(WholePath(files, path), Native(whole)) << path;
}

TEST(Paths, TakesPathsApart) {
    EXPECT_EQ(AsFolder("a"), Native("a/"));
    EXPECT_EQ(AsFolder("/a/"), "/a/");
    EXPECT_EQ(AsFolder(""), "");
    EXPECT_EQ(LastComponent("/a/Main Street/"), "Main Street");
    EXPECT_EQ(FolderOf("/a/b.rd2"), "/a/");
    EXPECT_EQ(FolderOf("b.rd2"), "");
    EXPECT_EQ(BaseName("/a/b.c.rd2"), "b.c");
    EXPECT_TRUE(HasExtension("S001.RD2", ".rd2"));
    EXPECT_FALSE(HasExtension(".rd2", ".rd2"));
}

}  // namespace
}  // namespace vantor
