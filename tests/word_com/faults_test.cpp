#include "errors/fault.h"
#include "fault.h"
#include "scripted_word.h"

#include <gtest/gtest.h>

#include <functional>

namespace pluvo::word_com {
namespace {

errors::Fault faultIn(const ScriptedObject::Member& script) {
  ScriptedWord word;
  const auto range = word.rangeOver(0, 1);
  word.rangeObject->on(L"InsertAfter", script);
  try {
    range->InsertAfter(u"x");
  } catch (const errors::Fault& fault) {
    return fault;
  }
  ADD_FAILURE() << "no fault";
  return {};
}

HRESULT refuse(EXCEPINFO& exception, SCODE code) {
  exception.scode = code;
  exception.bstrDescription =
      SysAllocString(L"You are not allowed to edit this selection because it is protected.");
  exception.bstrSource = SysAllocString(L"Microsoft Word");
  exception.bstrHelpFile = SysAllocString(L"wdmain11.chm");
  exception.dwHelpContext = 25421;
  return DISP_E_EXCEPTION;
}

constexpr SCODE kProtected = static_cast<SCODE>(0x800A17EC);

HRESULT STDAPICALLTYPE fillIn(EXCEPINFO* exception) {
  refuse(*exception, kProtected);
  return S_OK;
}

void expectProtected(const errors::Fault& fault) {
  EXPECT_EQ(fault.number, 6124);
  EXPECT_EQ(fault.description, u"You are not allowed to edit this selection because it is protected.");
  EXPECT_EQ(fault.source, u"Microsoft Word (Range.InsertAfter)");
  EXPECT_EQ(fault.helpFile, u"wdmain11.chm");
  EXPECT_EQ(fault.helpContext, 25421);
}

TEST(Faults, SayWhatWordSays) {
  expectProtected(
      faultIn([](auto&, VARIANT&, EXCEPINFO& exception) { return refuse(exception, kProtected); }));
  expectProtected(faultIn([](auto&, VARIANT&, EXCEPINFO& exception) {
    exception.pfnDeferredFillIn = fillIn;
    return DISP_E_EXCEPTION;
  }));
}

TEST(Faults, HaveTheRunTimesNumbers) {
  struct Case {
    HRESULT status;
    std::int32_t number;
  };
  const Case cases[] = {
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
  for (const Case& each : cases) {
    const errors::Fault plain = faultIn([&](auto&, VARIANT&, EXCEPINFO&) { return each.status; });
    EXPECT_EQ(plain.number, each.number);
    EXPECT_EQ(plain.source, u"Range.InsertAfter");
    EXPECT_FALSE(plain.description.empty());
    const errors::Fault raised = faultIn([&](auto&, VARIANT&, EXCEPINFO& exception) {
      exception.scode = each.status;
      return DISP_E_EXCEPTION;
    });
    EXPECT_EQ(raised.number, each.number);
  }
  const errors::Fault numbered = faultIn([](auto&, VARIANT&, EXCEPINFO& exception) {
    exception.wCode = 5155;
    return DISP_E_EXCEPTION;
  });
  EXPECT_EQ(numbered.number, 5155);
  const errors::Fault unnumbered = faultIn([](auto&, VARIANT&, EXCEPINFO&) { return DISP_E_EXCEPTION; });
  EXPECT_EQ(numbered.description, unnumbered.description) << "not that all went well";
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
      ScriptedWord word;
      const auto range = word.rangeOver(0, 1);
      word.rangeObject->leavesErrors = leaves;
      word.rangeObject->on(L"InsertAfter", [&](auto&, VARIANT&, EXCEPINFO&) {
        if (inCall) leaveErrorObject();
        return static_cast<HRESULT>(0x800A11FD);
      });
      leaveErrorObject();
      try {
        range->InsertAfter(u"x");
        ADD_FAILURE() << "no fault";
      } catch (const errors::Fault& fault) {
        EXPECT_EQ(fault.description == u"of another call", leaves && inCall);
        EXPECT_EQ(fault.number, 4605);
      }
    }
  }
  SetErrorInfo(0, nullptr);
}

TEST(Faults, OfAWordThatIsBusyComeAfterAWhile) {
  for (const HRESULT busy : {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER}) {
    ScriptedWord word;
    const auto range = word.rangeOver(0, 1);
    int calls = 0;
    word.rangeObject->on(L"InsertAfter",
                         [&](auto&, VARIANT&, EXCEPINFO&) { return ++calls < 4 ? busy : S_OK; });
    range->InsertAfter(u"x");
    EXPECT_EQ(calls, 4);
  }
  const errors::Fault fault = faultIn([](auto&, VARIANT&, EXCEPINFO&) { return RPC_E_CALL_REJECTED; });
  EXPECT_TRUE(fault.description.starts_with(u"Word is busy"));
}

TEST(Faults, TellOfMembersAndObjectsThatAreNotThere) {
  ScriptedWord word;
  const auto number = [](const std::function<void()>& work) {
    try {
      work();
    } catch (const errors::Fault& fault) {
      return fault.number;
    }
    return std::int32_t{0};
  };
  EXPECT_EQ(number([&] { word.connected()->PathSeparator(); }), kNoSuchMember);
  word.application->answersObject(L"ActiveDocument", [] { return nullptr; });
  EXPECT_EQ(number([&] { word.connected()->ActiveDocument(); }), errors::kObjectNotSet);
}

}  // namespace
}  // namespace pluvo::word_com
