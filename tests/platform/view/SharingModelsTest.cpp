// The models of the share sheet and of the dialog for a place: what they offer, and how they end.
#include "platform/view/UIActivityViewController.h"
#include "platform/view/UIDocumentPickerViewController.h"

#include "CommandRunner.h"
#include "ControllerBench.h"
#include "TestPictures.h"

namespace lamina::test {
namespace {

using Type = UIActivityType;

const std::set<Type> kAll{Type::OpenWith, Type::Mail, Type::Copy, Type::SaveCopy, Type::ShowInFolder, Type::Print};

class SharingModels : public ControllerBench {
protected:
    static std::vector<Type> typesOf(const UIActivityViewController& sheet)
    {
        std::vector<Type> types;
        for (const UIActivityRow& row : sheet.rows().rows())
            types.push_back(row.type);
        return types;
    }
    void present(const std::shared_ptr<UIActivityViewController>& sheet)
    {
        sheet->setCompletionWithItemsHandler([this](const UIActivityResult& result) {
            log += result.type ? "type " + std::to_string(static_cast<int>(*result.type)) : "closed";
            log += result.completed ? " done " : " not done ";
        });
        rootScreen->present(sheet, true);
        turns();
    }
};

TEST_F(SharingModels, ASheetOffersWhatTheMachineAndTheThingAllow)
{
    using Types = std::vector<Type>;
    const auto withFile = [](std::string path) {
        auto sheet = std::make_shared<UIActivityViewController>(path);
        sheet->setServed(kAll);
        return sheet;
    };
    EXPECT_EQ(typesOf(*withFile("/a/b.png")),
              Types({Type::OpenWith, Type::Mail, Type::Copy, Type::SaveCopy, Type::ShowInFolder}));
    const auto pdf = withFile("/srv/out/b.PDF");
    ASSERT_EQ(typesOf(*pdf),
              Types({Type::OpenWith, Type::Mail, Type::Copy, Type::SaveCopy, Type::ShowInFolder, Type::Print}));
    EXPECT_EQ(pdf->rows().rows()[4].line, "srv › out");
    EXPECT_EQ(pdf->rows().rows()[2].line, "The file, to the clipboard");
    pdf->setServed({Type::Print, Type::Copy});
    EXPECT_EQ(typesOf(*pdf), Types({Type::Copy, Type::Print}));
    EXPECT_EQ(typesOf(*withFile("")), Types()) << "no file at all";

    UIActivityViewController picture(UIImage(rampPicture(4, 3, 5)));
    EXPECT_FALSE(picture.isReady());
    picture.setServed(kAll);
    EXPECT_EQ(typesOf(picture), Types{Type::Copy});
    picture.expectFile();
    picture.setServed(kAll);
    EXPECT_EQ(typesOf(picture).size(), 5u);
    picture.setFile(std::string("/a/b.jpg"));
    EXPECT_EQ(typesOf(picture).size(), 5u);
    picture.setFile(Error{"b.jpg", "the disk is full"});
    EXPECT_EQ(typesOf(picture), Types{Type::Copy});
}

TEST_F(SharingModels, AChoiceIsToldWhenTheSheetHasGone)
{
    auto sheet = std::make_shared<UIActivityViewController>("/a/b.png");
    QObject::connect(sheet.get(), &UIActivityViewController::chosen, sheet.get(), [&](Type type) {
        EXPECT_EQ(window.topViewController(), rootScreen);
        EXPECT_EQ(sheet->presenter(), stack);
        log += "chosen " + std::to_string(static_cast<int>(type)) + ' ';
    });
    present(sheet);
    sheet->setServed(kAll);
    sheet->choose(7);
    sheet->choose(2);
    sheet->choose(0);
    sheet->cancel();
    EXPECT_EQ(heard(), "chosen 2 ");
    sheet->end(true);
    sheet->end(true);
    EXPECT_EQ(heard(), "type 2 done ");

    sheet = std::make_shared<UIActivityViewController>("/a/b.png");
    present(sheet);
    sheet->cancel();
    EXPECT_EQ(heard(), "closed not done ");

    sheet = std::make_shared<UIActivityViewController>("/a/b.png");
    present(sheet);
    sheet->setServed(kAll);
    sheet->choose(1);
    turns();
    sheet->fail("Can’t send", {"b.png", "no mail"});
    EXPECT_EQ(heard(), "type 1 not done ");
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->message(), "b.png: no mail.");
}

TEST_F(SharingModels, APlaceIsAskedForOnceAndNothingIsOverwrittenUnasked)
{
    const TemporaryFolder folder;
    const auto ask = [this] {
        auto picker = std::make_shared<UIDocumentPickerViewController>("a.png", [this](const auto& place) {
            EXPECT_EQ(window.topViewController(), rootScreen);
            log += place ? place->path + ' ' : "none ";
        });
        rootScreen->present(picker, true);
        turns();
        return picker;
    };
    auto picker = ask();
    picker->choose({"/x.png"});
    picker->cancel();
    EXPECT_EQ(heard(), "/x.png ");
    ask()->cancel();
    EXPECT_EQ(heard(), "none ");
    ask()->fail({"", "there is no file chooser"});
    EXPECT_EQ(heard(), "none ");
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->message(), "there is no file chooser");

    const std::string path = folder.path("a.png");
    const std::vector<std::uint8_t> bytes{'n', 'e', 'w'};
    EXPECT_TRUE(writeFileAtPlace({path}, bytes).ok());
    writeFile(path, "old");
    EXPECT_FALSE(writeFileAtPlace({path}, bytes).ok());
    EXPECT_EQ(readFile(path), "old");
    EXPECT_TRUE(writeFileAtPlace({path, true}, bytes).ok());
    EXPECT_EQ(readFile(path), "new");
}

} // namespace
} // namespace lamina::test
