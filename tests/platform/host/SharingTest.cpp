// What is chosen in a share sheet reaches the desktop: its portals, its file manager, its programs and the clipboard.
#include "platform/host/system/ActivityPresenter.h"
#include "platform/host/system/DocumentPresenter.h"

#include "CommandRunner.h"
#include "Environment.h"
#include "EventPump.h"
#include "TestPictures.h"
#include "TestPortal.h"
#include "platform/application/UIApplication.h"
#include "platform/host/system/FolderModel.h"
#include "platform/host/system/SystemURLOpener.h"
#include "platform/view/PresentationHost.h"
#include "platform/view/UIAlertController.h"
#include "platform/view/UIWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

using Type = UIActivityType;
using Manner = TestPortal::Manner;

/// Tells the presenters of what is presented, as the window does; nothing is seen.
class Host : public PresentationHost {
public:
    Host(ActivityPresenter& activities, DocumentPresenter& documents)
        : m_activities(activities)
        , m_documents(documents)
    {
    }
    void startTransition(const PresentationTransition& transition, std::function<void()> finished) override
    {
        if (transition.kind == PresentationTransition::Kind::Present) {
            m_activities.present(transition.to.get());
            m_documents.present(transition.to.get());
        }
        DispatchQueue::main().async(std::move(finished));
    }

private:
    ActivityPresenter& m_activities;
    DocumentPresenter& m_documents;
};

class Sharing : public testing::Test {
protected:
    Sharing()
    {
        // No programs of the machine's: only those that a test puts there.
        std::filesystem::create_directory(folder.path("bin"));
        path.set(folder.path("bin"));
        installSystemURLOpener();
        PresentationHost::setCurrent(std::make_shared<Host>(activities, documents));
        screens.setRootViewController(screen);
        writeFile(pdf, "%PDF-1.4 page");
    }
    ~Sharing() override
    {
        runFor(20);
        PresentationHost::setCurrent(nullptr);
        UIApplication::shared().setURLOpener({});
    }

    /// A program that writes down with what it was called.
    void install(const char* name)
    {
        const std::string program = folder.path(std::string("bin/") + name);
        writeFile(program, "#!/bin/sh\necho \"" + std::string(name) + " $*\" >>'" + folder.path("started") + "'\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }
    std::string started() const
    {
        return std::filesystem::exists(folder.path("started")) ? readFile(folder.path("started")) : std::string();
    }

    std::shared_ptr<UIActivityViewController> show(std::shared_ptr<UIActivityViewController> sheet)
    {
        results.clear();
        sheet->setCompletionWithItemsHandler([this](const UIActivityResult& result) { results.push_back(result); });
        screen->present(sheet, true);
        EXPECT_TRUE(runUntil([&] { return sheet->isReady(); }));
        runFor(30); // what was known from before is brought up to date
        return sheet;
    }
    static std::vector<Type> typesOf(const UIActivityViewController& sheet)
    {
        std::vector<Type> types;
        for (const UIActivityRow& row : sheet.rows().rows())
            types.push_back(row.type);
        return types;
    }
    void choose(UIActivityViewController& sheet, Type type)
    {
        const std::vector<Type> types = typesOf(sheet);
        const auto found = std::ranges::find(types, type);
        ASSERT_NE(found, types.end());
        sheet.choose(static_cast<int>(found - types.begin()));
    }
    /// Chooses it in a new sheet with the file.
    void share(Type type, const std::string& file)
    {
        choose(*show(std::make_shared<UIActivityViewController>(file)), type);
    }
    bool waitForEnd(bool completed)
    {
        const bool came = runUntil([this] { return !results.empty(); });
        runFor(20);
        return came && results.size() == 1 && results[0].completed == completed;
    }
    bool waitForQuestion(std::size_t count)
    {
        return runUntil([&] { return portal->questions().size() >= count; });
    }
    std::string alertText()
    {
        const auto alert = std::dynamic_pointer_cast<UIAlertController>(screens.topViewController());
        return alert ? alert->title() + '|' + alert->message() : "";
    }

    const TemporaryFolder folder;
    Variable path{"PATH", "/usr/bin:/bin"};
    const std::string pdf = folder.path("a b.pdf");
    QWindow window;
    ActivityPresenter activities{window};
    FolderModel folders;
    DocumentPresenter documents{window, folders};
    std::unique_ptr<TestPortal> portal = std::make_unique<TestPortal>();
    std::shared_ptr<UIViewController> screen = std::make_shared<UIViewController>();
    UIWindow screens;
    std::vector<UIActivityResult> results;
};

TEST_F(Sharing, OffersWhatTheMachineServes)
{
    using Types = std::vector<Type>;
    const auto offered = [this] {
        const auto sheet = show(std::make_shared<UIActivityViewController>(pdf));
        const Types types = typesOf(*sheet);
        sheet->cancel();
        runFor(20);
        return types;
    };
    portal->serveFileManager();
    EXPECT_EQ(offered(),
              Types({Type::OpenWith, Type::Mail, Type::Copy, Type::SaveCopy, Type::ShowInFolder, Type::Print}));
    portal.reset();
    EXPECT_EQ(offered(), Types({Type::Copy, Type::SaveCopy}));
    install("xdg-open");
    EXPECT_EQ(offered(), Types({Type::OpenWith, Type::Copy, Type::SaveCopy, Type::ShowInFolder}));
    install("xdg-email");
    EXPECT_EQ(offered(), Types({Type::OpenWith, Type::Mail, Type::Copy, Type::SaveCopy, Type::ShowInFolder}));
}

TEST_F(Sharing, PortalsGetTheFileItself)
{
    const struct {
        Type type;
        const char* call;
        QVariantMap options;
    } table[] = {
        {Type::OpenWith, "OpenURI.OpenFile", {{"ask", true}, {"writable", false}}},
        {Type::Mail, "Email.ComposeEmail", {{"subject", "a b.pdf"}}},
    };
    for (const auto& c : table) {
        SCOPED_TRACE(c.call);
        for (const unsigned code : {0u, 1u}) {
            const std::size_t before = portal->questions().size();
            share(c.type, pdf);
            ASSERT_TRUE(waitForQuestion(before + 1));
            TestPortal::Question asked = portal->questions().back();
            EXPECT_EQ(asked.call, c.call);
            EXPECT_EQ(asked.file, "%PDF-1.4 page");
            asked.options.remove("handle_token");
            EXPECT_EQ(asked.options, c.options);
            EXPECT_EQ(screens.topViewController(), screen) << "the sheet has gone";
            portal->respond(code);
            EXPECT_TRUE(waitForEnd(code == 0));
            EXPECT_EQ(alertText(), "");
        }
    }
}

TEST_F(Sharing, PrintingAsksFirstAndSendsThePageWithTheToken)
{
    share(Type::Print, pdf);
    ASSERT_TRUE(waitForQuestion(1));
    EXPECT_EQ(portal->questions()[0].call, "Print.PreparePrint");
    EXPECT_EQ(portal->questions()[0].title, "a b.pdf");
    portal->respond(0, {{"token", 77u}});
    ASSERT_TRUE(waitForQuestion(2));
    const TestPortal::Question& sent = portal->questions()[1];
    EXPECT_EQ(sent.call, "Print.Print");
    EXPECT_EQ(sent.file, "%PDF-1.4 page");
    EXPECT_EQ(sent.options["token"], 77u);
    portal->respond(0);
    EXPECT_TRUE(waitForEnd(true));
    share(Type::Print, pdf);
    ASSERT_TRUE(waitForQuestion(3));
    portal->respond(2);
    EXPECT_TRUE(waitForEnd(false));
    EXPECT_EQ(alertText(), "Can’t print|a b.pdf: no program takes it.");
}

TEST_F(Sharing, ProgramsStandInForPortalsAndWithoutThemAnAlertSaysSo)
{
    portal->setManner(Manner::Refuses);
    const std::string url = "file://" + folder.path();
    share(Type::OpenWith, pdf);
    EXPECT_TRUE(waitForEnd(false));
    EXPECT_EQ(alertText(), "Can’t open the file|a b.pdf: no program takes it.");
    screen->dismiss(false);
    for (const char* const program : {"xdg-open", "xdg-email"})
        install(program);
    share(Type::OpenWith, pdf);
    EXPECT_TRUE(waitForEnd(true));
    share(Type::Mail, pdf);
    EXPECT_TRUE(waitForEnd(true));
    share(Type::ShowInFolder, pdf);
    EXPECT_TRUE(waitForEnd(true));
    const std::string all = "xdg-open " + url + "/a%20b.pdf\nxdg-email --attach " + pdf + "\nxdg-open " + url + '\n';
    EXPECT_TRUE(runUntil([&] { return started().size() == all.size(); }));
    EXPECT_EQ(started(), all);
    portal->serveFileManager();
    share(Type::ShowInFolder, pdf);
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(portal->shownItems(), QStringList(QString::fromStdString(url + "/a%20b.pdf")));

    share(Type::Mail, folder.path("gone.pdf"));
    EXPECT_TRUE(waitForEnd(false));
    EXPECT_EQ(alertText(), "Can’t send the file|" + folder.path("gone.pdf") + ": no such file.");
}

TEST_F(Sharing, CopiesThePictureAndTheListOfFiles)
{
    const auto held = [](const char* type) { return QGuiApplication::clipboard()->mimeData()->data(type); };
    const std::string png = folder.path("ü.png");
    writePng(png, rampPicture(4, 3, 5));
    share(Type::Copy, png);
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(held("text/uri-list"), QByteArray::fromStdString("file://" + folder.path() + "/%C3%BC.png\r\n"));
    EXPECT_EQ(QImage::fromData(held("image/png")).size(), QSize(4, 3));
    share(Type::Copy, pdf);
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(held("image/png"), "");
    const auto picture = std::make_shared<UIActivityViewController>(UIImage(rampPicture(7, 3, 5)));
    choose(*show(picture), Type::Copy);
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(QImage::fromData(held("image/png")).size(), QSize(7, 3));
    EXPECT_EQ(held("text/uri-list"), "");
}

TEST_F(Sharing, APictureWaitsForItsFile)
{
    const auto sheet = std::make_shared<UIActivityViewController>(UIImage(rampPicture(4, 3, 5)));
    sheet->expectFile();
    choose(*show(sheet), Type::Mail);
    runFor(30);
    EXPECT_TRUE(portal->questions().empty());
    sheet->setFile(pdf);
    ASSERT_TRUE(waitForQuestion(1));
    EXPECT_EQ(portal->questions()[0].file, "%PDF-1.4 page");
    portal->respond(0);
    EXPECT_TRUE(waitForEnd(true));
}

TEST_F(Sharing, ACopyGoesWhereTheDialogSays)
{
    const std::string copy = folder.path("copy.pdf");
    const auto answer = [&](unsigned code) {
        const std::size_t before = portal->questions().size();
        share(Type::SaveCopy, pdf);
        ASSERT_TRUE(waitForQuestion(before + 1));
        portal->respond(code, {{"uris", QStringList(QString::fromStdString("file://" + copy))}});
    };
    answer(0);
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(portal->questions()[0].call, "FileChooser.SaveFile");
    EXPECT_EQ(portal->questions()[0].options["current_name"], "a b.pdf");
    EXPECT_EQ(results[0].path, copy);
    EXPECT_EQ(readFile(copy), "%PDF-1.4 page");
    writeFile(copy, "old"); // the dialog has asked about it
    answer(0);
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(readFile(copy), "%PDF-1.4 page");
    answer(1);
    EXPECT_TRUE(waitForEnd(false));
    std::filesystem::remove(copy);
    std::filesystem::create_directory(copy);
    answer(0);
    EXPECT_TRUE(waitForEnd(false));
    EXPECT_EQ(alertText(), "Can’t save the copy|" + copy + ": is a folder.");
    screen->dismiss(false);
    portal->setManner(Manner::Refuses); // asked for in the window then, and nothing is replaced
    share(Type::SaveCopy, pdf);
    ASSERT_TRUE(runUntil([this] { return documents.folderPicker() != nullptr; }));
    documents.placeIn(folder.path());
    EXPECT_TRUE(waitForEnd(true));
    EXPECT_EQ(results[0].path, folder.path("a b 2.pdf"));
    EXPECT_EQ(readFile(folder.path("a b 2.pdf")), "%PDF-1.4 page");
    EXPECT_FALSE(documents.folderPicker());
}

TEST_F(Sharing, AFolderIsChosenInTheDialogOrInTheWindow)
{
    std::vector<std::string> chosen;
    const auto ask = [&] {
        const auto answer = [&](const std::optional<UIDocumentPlace>& place) {
            chosen.push_back(place ? place->path : "none");
        };
        screen->present(std::make_shared<UIDocumentPickerViewController>("", answer), true);
    };
    ask();
    ASSERT_TRUE(waitForQuestion(1));
    EXPECT_EQ(portal->questions()[0].call, "FileChooser.OpenFile");
    EXPECT_EQ(portal->questions()[0].options["directory"], true);
    EXPECT_TRUE(portal->questions()[0].filters.empty());
    portal->respond(0, {{"uris", QStringList{"file:///mnt/card%201"}}});
    ASSERT_TRUE(runUntil([&] { return chosen.size() == 1; }));
    portal->setManner(Manner::Refuses);
    ask();
    ASSERT_TRUE(runUntil([this] { return documents.folderPicker() != nullptr; }));
    documents.placeIn(folder.path());
    ASSERT_TRUE(runUntil([&] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen, (std::vector<std::string>{"/mnt/card 1", folder.path()}));
}

} // namespace
} // namespace lamina::test
