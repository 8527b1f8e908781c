#include <gtest/gtest.h>

#include "cli/CommandRunner.h"
#include "core/StudyFile.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

TEST(ExportCommandTest, LeavesNoHalfFileAndNamesWhatIsWrong) {
    CommandRunner program;
    program.Files.CreateFolder("/out");
    Study study;
    AppendRun(study, "NB-1");
    PutStudyFile(program.Files, study, "/", "AM");
    const auto exportTo = [&](const std::string& output) {
        return program.Run({"study", "export", "/AM.ld2", "--output", output});
    };
    EXPECT_EQ(exportTo("/out/AM.txt"), 2);
    EXPECT_EQ(program.Err, "/out/AM.txt\nA run list is an .xls, .xlsx or .csv file.\n");
    EXPECT_EQ(program.Run({"study", "export", "/PM.ld2", "--output", "/out/PM.csv"}), 1);
    EXPECT_EQ(program.Err, "Missing Study File: PM\n");

    EXPECT_EQ(exportTo("/out/AM.XLSX"), 0) << "letters of an extension are alike";
    EXPECT_EQ(program.Sheets.Format, WorkbookFormat::Xlsx);
    const auto before = program.Files.Bytes("/out/AM.XLSX");
    program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_EQ(exportTo("/out/AM.XLSX"), 1);
    EXPECT_NE(program.Err.find("/out/AM.XLSX"), std::string::npos) << program.Err;
    EXPECT_EQ(program.Files.Bytes("/out/AM.XLSX"), before);
}

}  // namespace
}  // namespace vantor
