#pragma once

#include "variant.h"
#include "word_com/application.h"
#include "word_log.h"

#include <oaidl.h>
#include <wrl/client.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace pluvo::word_com {

/// The member ids of Word's interfaces, each asked for once. All objects of an interface share them.
class MemberIds {
 public:
  DISPID of(IDispatch& object, const wchar_t* interfaceName, const wchar_t* member);

 private:
  std::map<std::pair<std::wstring_view, std::wstring_view>, DISPID> ids_;
};

struct Held;

/// The state that all objects of one Word share.
struct Session {
  explicit Session(const Manner& theManner) : manner(theManner), log(theManner.logging) {}
  /// Releases all that is held of this Word. A call that is being made keeps its own object until it returns.
  void letGo();

  Manner manner;
  MemberIds ids;
  WordLog log;
  /// Flags of Find that this Word does not let be set to what they are anyway.
  std::set<std::wstring_view> unsetFlags;
  std::unordered_set<Held*> held;
};

/// A reference to an object of Word, of which its session knows; none once the session has let go.
struct Held {
  Held(Microsoft::WRL::ComPtr<IDispatch> theObject, std::shared_ptr<Session> theSession);
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { session->held.erase(this); }

  Microsoft::WRL::ComPtr<IDispatch> object;
  std::shared_ptr<Session> session;
};

/// An object of Word, of the interface named. Names are literals.
class Object {
 public:
  Object(Microsoft::WRL::ComPtr<IDispatch> object, const wchar_t* interfaceName,
         std::shared_ptr<Session> session);

  Variant get(const wchar_t* property, const Arguments& arguments = {}) const;
  void put(const wchar_t* property, const Arguments& value) const;
  Variant call(const wchar_t* method, const Arguments& arguments = {}) const;

  /// The same, where an object comes back. Throw Fault kObjectNotSet where none does.
  Object getObject(const wchar_t* property, const wchar_t* interfaceName,
                   const Arguments& arguments = {}) const;
  /// The same where there may be none.
  std::optional<Object> findObject(const wchar_t* property, const wchar_t* interfaceName) const;
  Object callObject(const wchar_t* method, const wchar_t* interfaceName,
                    const Arguments& arguments = {}) const;

  Session& session() const { return *held_->session; }

 private:
  Variant invoke(WORD kind, const wchar_t* member, const Arguments& arguments) const;
  Object related(const Variant& object, const wchar_t* interfaceName) const;

  std::shared_ptr<Held> held_;
  const wchar_t* interface_;
};

}  // namespace pluvo::word_com
