#include "fault.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace pluvo::word_com {
namespace {

using stand_in::Arguments;
using stand_in::CallBook;
using stand_in::WordSession;

const std::u16string kInsert = u"call Range.InsertAfter";

errors::Fault faultOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const errors::Fault& fault) {
    return fault;
  }
  ADD_FAILURE() << "no fault";
  return {};
}

/// A range of a Word that answers so when text is put in after it.
class Inserting {
 public:
  explicit Inserting(CallBook::Script script) { WordSession::calls().on(kInsert, std::move(script)); }
  void insert() { range_->InsertAfter(u"x"); }

 private:
  WordSession session_;
  std::shared_ptr<stand_in::OpenDocument> document_ = WordSession::document(u"text");
  std::shared_ptr<word::Range> range_ = session_.word()->ActiveDocument()->Range(0, 1);
};

errors::Fault faultIn(CallBook::Script script) {
  Inserting inserting(std::move(script));
  return faultOf([&] { inserting.insert(); });
}

constexpr auto kProtected = static_cast<HRESULT>(0x800A17EC);

HRESULT STDAPICALLTYPE fillIn(EXCEPINFO* exception) {
  exception->scode = kProtected;
  exception->bstrDescription =
      SysAllocString(L"You are not allowed to edit this selection because it is protected.");
  exception->bstrSource = SysAllocString(L"Microsoft Word");
  exception->bstrHelpFile = SysAllocString(L"wdmain11.chm");
  exception->dwHelpContext = 25421;
  return S_OK;
}

TEST(Faults, SayWhatWordSays) {
  for (const bool deferred : {false, true}) {
    const errors::Fault fault = faultIn([=](const Arguments&, VARIANT&, EXCEPINFO& exception) {
      if (deferred) {
        exception.pfnDeferredFillIn = fillIn;
      } else {
        fillIn(&exception);
      }
      return DISP_E_EXCEPTION;
    });
    EXPECT_EQ(fault.number, 6124);
    EXPECT_EQ(fault.description, u"You are not allowed to edit this selection because it is protected.");
    EXPECT_EQ(fault.source, u"Microsoft Word (Range.InsertAfter)");
    EXPECT_EQ(fault.helpFile, u"wdmain11.chm");
    EXPECT_EQ(fault.helpContext, 25421);
  }
}

TEST(Faults, HaveTheRunTimesNumbers) {
  constexpr std::pair<HRESULT, std::int32_t> kCases[] = {
      {static_cast<HRESULT>(0x800A1066), 4198},
      {static_cast<HRESULT>(0x800A156D), 5485},
      {DISP_E_MEMBERNOTFOUND, 438},
      {DISP_E_TYPEMISMATCH, 13},
      {DISP_E_BADPARAMCOUNT, 450},
      {E_OUTOFMEMORY, 7},
      {RPC_E_DISCONNECTED, 462},
      {static_cast<HRESULT>(0x800706BA), 462},
      {E_NOTIMPL, static_cast<std::int32_t>(E_NOTIMPL)},
  };
  for (const auto& [status, number] : kCases) {
    const errors::Fault plain =
        faultIn([status = status](const Arguments&, VARIANT&, EXCEPINFO&) { return status; });
    EXPECT_EQ(plain.number, number);
    EXPECT_EQ(plain.source, u"Range.InsertAfter");
    EXPECT_FALSE(plain.description.empty());
    const errors::Fault raised = faultIn([status = status](const Arguments&, VARIANT&, EXCEPINFO& exception) {
      exception.scode = status;
      return DISP_E_EXCEPTION;
    });
    EXPECT_EQ(raised.number, number);
  }
  const auto withCode = [](WORD code) {
    return faultIn([=](const Arguments&, VARIANT&, EXCEPINFO& exception) {
      exception.wCode = code;
      return DISP_E_EXCEPTION;
    });
  };
  EXPECT_EQ(withCode(5155).number, 5155);
  EXPECT_EQ(withCode(5155).description, withCode(0).description) << "not that all went well";
}

void leaveErrorObject() {
  Microsoft::WRL::ComPtr<ICreateErrorInfo> made;
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  std::wstring text = L"of another call";
  if (SUCCEEDED(CreateErrorInfo(&made)) && SUCCEEDED(made->SetDescription(text.data())) &&
      SUCCEEDED(made.As(&info)))
    SetErrorInfo(0, info.Get());
}

TEST(Faults, BelieveNoErrorObjectThatIsNotOfTheCall) {
  for (const bool leaves : {false, true}) {
    for (const bool inCall : {false, true}) {
      Inserting inserting([=](const Arguments&, VARIANT&, EXCEPINFO&) {
        if (inCall) leaveErrorObject();
        return static_cast<HRESULT>(0x800A11FD);
      });
      WordSession::calls().leavesErrors = leaves;
      leaveErrorObject();
      const errors::Fault fault = faultOf([&] { inserting.insert(); });
      EXPECT_EQ(fault.description == u"of another call", leaves && inCall);
      EXPECT_EQ(fault.number, 4605);
    }
  }
  SetErrorInfo(0, nullptr);
}

TEST(Faults, OfAWordThatIsBusyComeAfterAWhile) {
  for (const HRESULT busy : {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER}) {
    int calls = 0;
    Inserting inserting([&](const Arguments&, VARIANT&, EXCEPINFO&) { return ++calls < 4 ? busy : S_OK; });
    inserting.insert();
    EXPECT_EQ(calls, 4);
  }
  const errors::Fault fault =
      faultIn([](const Arguments&, VARIANT&, EXCEPINFO&) { return RPC_E_CALL_REJECTED; });
  EXPECT_TRUE(fault.description.starts_with(u"Word is busy"));
}

TEST(Faults, TellOfMembersAndObjectsThatAreNotThere) {
  const WordSession session;
  WordSession::calls().lack(u"Application.PathSeparator");
  EXPECT_EQ(faultOf([&] { session.word()->PathSeparator(); }).number, kNoSuchMember);
  WordSession::calls().on(u"get Application.ActiveDocument",
                          [](const Arguments&, VARIANT&, EXCEPINFO&) { return S_OK; });
  EXPECT_EQ(faultOf([&] { session.word()->ActiveDocument(); }).number, errors::kObjectNotSet);
}

}  // namespace
}  // namespace pluvo::word_com
