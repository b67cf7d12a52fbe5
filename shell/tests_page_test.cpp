// The test runner on the real main window, with the message boxes answered
// by the test.
#include <gtest/gtest.h>

#include <functional>

#include "gl/device_state.h"
#include "shell/glpicture.h"
#include "shell/main_window.h"
#include "testsupport/testsupport.h"
#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "win32/ui.h"

namespace {

using namespace shell;

struct Box {
  std::string text, title;
  UINT style;
};

// The system menu's Close on the test window while its scene animates.
void CALLBACK CloseFromSystemMenu(HWND, UINT, UINT_PTR id, DWORD) {
  KillTimer(nullptr, id);
  if (HWND w = FindWindowA("GLTest_frm", nullptr)) PostMessageA(w, WM_SYSCOMMAND, SC_CLOSE, 0);
}

class Runner : public ::testing::Test {
 protected:
  void SetUp() override {
    mOpenGL::State() = {};
    win32::SetMsgBoxHook([this](HWND, const std::string& text, const std::string& title, UINT style) {
      boxes.push_back({text, title, style});
      return answer(Box{text, title, style});
    });
    char dir[MAX_PATH];
    GetTempPathA(MAX_PATH, dir);
    main = std::make_unique<VelmoraMain>(std::string(dir) + "velmora_runner_none.ini");
    ASSERT_TRUE(main->Create());
    ShowWindow(main->hwnd(), SW_SHOW);
    testsupport::Pump();
  }
  void TearDown() override {
    main.reset();
    win32::SetMsgBoxHook(nullptr);
    mOpenGL::ResetPlatform();
  }
  // Answers: OK to notices, Yes to questions, unless a test says otherwise.
  static int Default(const Box& b) {
    if ((b.style & 0xF) == MB_YESNO) return IDYES;
    if ((b.style & 0xF) == MB_ABORTRETRYIGNORE) return IDABORT;
    return IDOK;
  }
  HWND C(int id) { return main->Control(id); }
  std::string Label(int i) { return win32::GetText(C(kGLTestLbl0 + i)); }
  std::string Report() { return win32::GetText(C(kSpecsTbx)); }
  std::vector<Box> Titled(const std::string& title) {
    std::vector<Box> r;
    for (const Box& b : boxes)
      if (b.title == title) r.push_back(b);
    return r;
  }
  void Press(int i) { SendMessageA(C(kGLTestCbt0 + i), BM_CLICK, 0, 0); }

  std::function<int(const Box&)> answer = Default;
  std::vector<Box> boxes;
  std::unique_ptr<VelmoraMain> main;
  testsupport::WaitingWindowCloser closer;
};

TEST_F(Runner, CancelOnTheWaitNoticeChangesNothing) {
  answer = [](const Box&) { return IDCANCEL; };
  SetFocus(C(kGLTestCbt0 + 1));
  std::string report = Report();
  Press(1);
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].text, "Please wait until the check window disappears (5 sec.)");
  EXPECT_EQ(boxes[0].title, "Point Size");
  EXPECT_EQ(boxes[0].style, static_cast<UINT>(MB_OKCANCEL));
  EXPECT_EQ(Label(1), "");
  EXPECT_EQ(Report(), report);
  EXPECT_EQ(GetFocus(), C(kGLTestCbt0 + 1));
}

// The answer decides the label and the report line; the label's tip shows
// the automatic check beside it.
TEST_F(Runner, TheAnswerGivesTheLabelAndTheReportCarriesIt) {
  const struct {
    int answer, test;
    const char* label;
    int errorCode;
    const char* tip;
  } cases[] = {
      {IDYES, 1, "OK", 0, "Automatic check: passed"},
      {IDNO, 6, "Error -1", -1, "Automatic check: passed - this disagrees with your answer \"No\""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    answer = [&c](const Box& b) { return (b.style & 0xF) == MB_YESNO ? c.answer : IDOK; };
    boxes.clear();
    Press(c.test);
    const std::string format = std::to_string(main->CurrentOGLPixelFormat());
    const std::string label = std::string(c.label) + " (#" + format + ")";
    EXPECT_EQ(Label(c.test), label);
    EXPECT_EQ(tests::TestErrorCode, c.errorCode);
    auto question = Titled(tests::kTestCaptions[c.test]);
    ASSERT_EQ(question.size(), 2u) << "the wait notice and the question";
    EXPECT_EQ(question[1].text, tests::TestText(c.test, 0));
    EXPECT_EQ(question[1].style, static_cast<UINT>(MB_YESNO));
    std::string line = tests::kTestCaptions[c.test] + std::string(":");
    line.resize(20, ' ');
    EXPECT_NE(Report().find("\r\n" + line + "\t" + label + "\r\n"), std::string::npos);
    EXPECT_EQ(win32::LabelTipText(C(kGLTestLbl0 + c.test)), c.tip);
    EXPECT_EQ(GetFocus(), C(kNext)) << "the report moves the focus on";
  }
  EXPECT_NE(Report().find("\r\nText Output:        \t? Not checked ?\r\n"), std::string::npos);
}

HGLRC WINAPI NoContext(HDC) {
  SetLastError(ERROR_ACCESS_DENIED);
  return nullptr;
}

TEST_F(Runner, FailedContextIsToldOnlyByNoGLAccessAndTheQuestionIsAsked) {
  mOpenGL::Platform().CreateContext = &NoContext;
  Press(0);
  auto access = [&](const char* text) {
    int n = 0;
    for (const Box& b : boxes) n += b.text == text && b.style == MB_OK && b.title == "Velmora";
    return n;
  };
  EXPECT_EQ(access("No GL Access (1)"), 1);
  EXPECT_EQ(access("No GL Access (2)"), 1);
  ASSERT_EQ(Titled("Multiple Access").size(), 2u) << "the wait notice and the question";
  EXPECT_EQ(Titled("Multiple Access")[1].text, tests::TestText(0, 0));
  EXPECT_EQ(Label(0).rfind("OK (#", 0), 0u) << "frames without a context are no failed frames";
}

TEST_F(Runner, InteractionSkipsTheWaitNoticeAndMovesTheFocusToNext) {
  Press(12);
  auto titled = Titled("Interaction");
  ASSERT_EQ(titled.size(), 1u) << "only the question";
  EXPECT_EQ(titled[0].text, tests::TestText(12, 0));
  EXPECT_EQ(Label(12).rfind("OK (#", 0), 0u);
  EXPECT_EQ(GetFocus(), C(kNext));
}

TEST_F(Runner, ClosingTheTestWindowEarlyStillAsksTheQuestion) {
  SetTimer(nullptr, 0, 30, CloseFromSystemMenu);
  DWORD start = GetTickCount();
  Press(10);
  EXPECT_LT(GetTickCount() - start, 4000u) << "ended before its 51 ticks";
  EXPECT_EQ(Titled("Big Lists").size(), 2u);
  EXPECT_EQ(Label(10).rfind("OK (#", 0), 0u);
}

// Each timed test is cancelled at its wait notice, so the notices (and the
// interaction test's question) show the order.
TEST_F(Runner, RunAllRunsThirteenTestsInOrderThenTheQuadView) {
  answer = [](const Box& b) { return (b.style & 0xF) == MB_OKCANCEL ? IDCANCEL : Default(b); };
  SendMessageA(C(kRunAll), BM_CLICK, 0, 0);
  std::vector<std::string> titles;
  for (const Box& b : boxes) titles.push_back(b.title);
  std::vector<std::string> expected(tests::kTestCaptions, tests::kTestCaptions + tests::kTestCount);
  EXPECT_EQ(titles, expected);
  EXPECT_EQ(Label(tests::kInteractionTest).rfind("OK (#", 0), 0u);
  EXPECT_NE(win32::GetText(C(kQuadViewLbl)), "") << "the quad view ran last";
  EXPECT_TRUE(main->TestsAsked());
  EXPECT_EQ(GetFocus(), C(kNext));
}

HMODULE WINAPI NoDll(LPCSTR) {
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

TEST_F(Runner, WithoutOpenGLEachCheckSaysSoOnceAndChangesNothing) {
  const struct {
    const char* what;
    std::function<void(VelmoraMain&)> press;
    const char* title;
  } cases[] = {
      {"a test", [](VelmoraMain& m) { m.General().GLTest_Cbt_Click(1); }, "Point Size"},
      {"the quad view", [](VelmoraMain& m) { m.General().QuadView_Cbt_Click(); }, "QuadView"},
      {"run all", [](VelmoraMain& m) { m.General().GLTestRunAll_Cbt_Click(); }, "Run All"},
      {"the pixel formats", [](VelmoraMain& m) { m.CheckPixelFormats_SetLbl_Click(); },
       "Pixel Formats"},
  };
  mOpenGL::Platform().LoadDll = &NoDll;
  const std::string report = Report();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    boxes.clear();
    c.press(*main);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, kOpenGLMissingText);
    EXPECT_EQ(boxes[0].title, c.title);
    for (int i = 0; i < tests::kTestCount; ++i) EXPECT_EQ(Label(i), "") << i;
    EXPECT_EQ(win32::GetText(C(kQuadViewLbl)), "");
    EXPECT_EQ(Report(), report);
    EXPECT_EQ(FindWindowA("GLTest_frm", nullptr), nullptr);
  }
  boxes.clear();
  main->Library().Specs_Cbt_Click();
  EXPECT_EQ(Report(), "DLL missing");
  EXPECT_TRUE(boxes.empty());
  EXPECT_FALSE(main->SpecsAsked());
}

}  // namespace
