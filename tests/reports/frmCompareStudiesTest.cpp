#include "reports/forms/frmCompareStudies.h"

#include <gmock/gmock.h>

#include "fakes/FormScene.h"
#include "reports/ReportStudies.h"

namespace vantor {
namespace {

class frmCompareStudiesTest : public FormScene<frmCompareStudies> {
protected:
    frmCompareStudiesTest() {
        for (const std::string& folder : {Before, After, Empty}) Files.CreateFolder(folder);
        State.Paths.LastStudyGroupPath = Before;
        State.CurrentStudy = PutReportedStudy(Files, Before, 3);
        PutReportedStudy(Files, After, 2);
    }

    const std::string Before = "/start/Study Groups/Before/";
    const std::string After = "/start/Study Groups/After/";
    const std::string Empty = "/start/Study Groups/Empty/";
};

TEST_F(frmCompareStudiesTest, OthersAreAddedTakenOutAndSaved) {
    Open();
    EXPECT_FALSE(IsEnabled("BtnSavePdf")) << "one study alone";
    DesktopServices.FileToOpen = After + "AM Peak.ld2";
    Press("btnAddStudy");
    DesktopServices.FolderToChoose = After;
    Press("btnAddGroup");
    auto& studies = Get<QListWidget>("lstStudies");
    EXPECT_EQ(studies.count(), 3);
    DesktopServices.FileToSave = "/start/c.pdf";
    Press("BtnSavePdf");
    EXPECT_EQ(DesktopServices.AskedFrom, Before + "Comparison with AM Peak.pdf");
    std::vector<std::string> texts;
    for (const auto& text : Documents.Pages.at(0).Texts) texts.push_back(text.Shown);
    EXPECT_THAT(texts,
                testing::IsSupersetOf({"After against AM Peak", "60.0 ± 0.0", "2 runs, 1 day, 07:30; few runs"}));

    Press("btnFirst");
    EXPECT_THAT(FromQt(studies.item(0)->text()), testing::StartsWith("After\n2 runs\nThere are no control delays"));
    for (int i = 0; i < 2; ++i) Press("btnRemove");
    EXPECT_FALSE(IsEnabled("BtnPrint"));
    DesktopServices.FolderToChoose = Empty;
    Messages.Expect("There is no run to compare in\n" + Empty);
    Press("btnAddGroup");
    EXPECT_EQ(studies.count(), 1);
}

}  // namespace
}  // namespace vantor
