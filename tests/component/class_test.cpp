#include "loaded_component.h"
#include "pluvo_interface.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

namespace pluvo::component {
namespace {

using Microsoft::WRL::ComPtr;

ComPtr<IClassFactory> factoryOf(const LoadedComponent& component) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(component.getClassObject(CLSID_clsOpenPLUVO, IID_PPV_ARGS(&factory)), S_OK);
  return factory;
}

TEST(Class, LivesAsLongAsSomebodyHoldsIt) {
  const LoadedComponent component;
  EXPECT_EQ(component.canUnloadNow(), S_OK);
  ComPtr<IClassFactory> factory = factoryOf(component);
  EXPECT_EQ(component.canUnloadNow(), S_FALSE);
  ComPtr<IDispatch> object;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&object)), S_OK);
  factory.Reset();
  EXPECT_EQ(component.canUnloadNow(), S_FALSE);
  object.Reset();
  EXPECT_EQ(component.canUnloadNow(), S_OK);

  factory = factoryOf(component);
  factory->LockServer(TRUE);
  ComPtr<IClassFactory> second = factory;
  factory.Reset();
  second.Reset();
  EXPECT_EQ(component.canUnloadNow(), S_FALSE);
  factoryOf(component)->LockServer(FALSE);
  EXPECT_EQ(component.canUnloadNow(), S_OK);
}

TEST(Class, AnswersWhatItIsNot) {
  const LoadedComponent component;
  ComPtr<IUnknown> none;
  EXPECT_EQ(component.getClassObject(IID_IUnknown, IID_PPV_ARGS(&none)), CLASS_E_CLASSNOTAVAILABLE);
  const ComPtr<IClassFactory> factory = factoryOf(component);
  EXPECT_EQ(factory->CreateInstance(factory.Get(), IID_PPV_ARGS(&none)), CLASS_E_NOAGGREGATION);
  ComPtr<IPersist> persist;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&persist)), E_NOINTERFACE);
  EXPECT_EQ(persist.Get(), nullptr);

  ComPtr<_clsOpenPLUVO> object;
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&object)), S_OK);
  ComPtr<ISupportErrorInfo> support;
  ASSERT_EQ(object.As(&support), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__clsOpenPLUVO), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_FALSE);
  // One object has one identity, by whichever interface it is asked.
  ComPtr<IUnknown> first;
  ComPtr<IUnknown> second;
  ASSERT_EQ(object.As(&first), S_OK);
  ASSERT_EQ(support.As(&second), S_OK);
  EXPECT_EQ(first.Get(), second.Get());
}

/// No Word runs here.
TEST(Class, GivesAFaultAwayAsAStatusWithItsTexts) {
  const LoadedComponent component;
  ComPtr<_clsOpenPLUVO> object;
  ASSERT_EQ(factoryOf(component)->CreateInstance(nullptr, IID_PPV_ARGS(&object)), S_OK);
  constexpr auto kCannotCreate = static_cast<HRESULT>(0x800A01AD);
  EXPECT_EQ(object->OpenPLUVO(), kCannotCreate);
  ComPtr<IErrorInfo> info;
  ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
  BSTR description = nullptr;
  info->GetDescription(&description);
  EXPECT_STREQ(description, L"Microsoft Word is not running, or does not answer. Start Word and try again.");
  SysFreeString(description);

  auto* name = const_cast<wchar_t*>(L"openpluvo");
  DISPID id = DISPID_UNKNOWN;
  ASSERT_EQ(object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  EXPECT_EQ(id, 1);
  DISPPARAMS none = {};
  EXCEPINFO exception = {};
  EXPECT_EQ(
      object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, nullptr, &exception, nullptr),
      DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, kCannotCreate);
  EXPECT_STREQ(exception.bstrSource, L"PLUVO");
  for (BSTR text : {exception.bstrDescription, exception.bstrSource, exception.bstrHelpFile})
    SysFreeString(text);
  object.Reset();
  EXPECT_EQ(component.canUnloadNow(), S_OK) << "a start-up that failed left something";
}

}  // namespace
}  // namespace pluvo::component
