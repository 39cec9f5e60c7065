#include "platform/win32/wmi.h"

#include <utility>

#include "platform/win32/windows_api.h"

#include <ole2.h>

namespace win32 {

namespace {

/// Owns one reference to an object.
template <class Interface>
class Reference {
 public:
  Reference() = default;
  ~Reference() {
    if (object_ != nullptr) object_->Release();
  }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  Interface** receive() { return &object_; }

 private:
  Interface* object_ = nullptr;
};

class Variant {
 public:
  Variant() { VariantInit(&value_); }
  explicit Variant(BSTR text) : Variant() {
    value_.vt = VT_BSTR;
    value_.bstrVal = text;
  }
  ~Variant() { VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  VARIANT* receive() { return &value_; }
  IDispatch* object() const { return value_.vt == VT_DISPATCH ? value_.pdispVal : nullptr; }
  IUnknown* unknown() const { return value_.vt == VT_UNKNOWN || value_.vt == VT_DISPATCH ? value_.punkVal : nullptr; }
  BSTR text() const { return value_.vt == VT_BSTR ? value_.bstrVal : nullptr; }

 private:
  VARIANT value_;
};

/// The component object model, for as long as a query lasts.
class ComponentModel {
 public:
  ComponentModel() : result_(CoInitialize(nullptr)) {}
  ~ComponentModel() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComponentModel(const ComponentModel&) = delete;
  ComponentModel& operator=(const ComponentModel&) = delete;

 private:
  HRESULT result_;
};

std::wstring Wide(const std::string& text) {
  int size = static_cast<int>(text.size());
  std::wstring converted(text.size(), L'\0');
  int length = MultiByteToWideChar(CP_ACP, 0, text.data(), size, converted.data(), size);
  converted.resize(length);
  return converted;
}

std::string Narrow(BSTR text) {
  int size = static_cast<int>(SysStringLen(text));
  std::string converted(static_cast<std::size_t>(size) * 2, '\0');  // no ANSI code page needs more than two bytes
  int length = WideCharToMultiByte(CP_ACP, 0, text, size, converted.data(), size * 2, nullptr, nullptr);
  converted.resize(length);
  return converted;
}

// Both kinds of call at once: the scripting objects of management answer either by one and refuse the other.
constexpr WORD CallOrRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

HRESULT Invoke(IDispatch* object, DISPID member, DISPPARAMS parameters, Variant& answer) {
  return object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, CallOrRead, &parameters, answer.receive(), nullptr,
                        nullptr);
}

HRESULT InvokeByName(IDispatch* object, const wchar_t* name, DISPPARAMS parameters, Variant& answer) {
  std::wstring writable = name;
  LPOLESTR names[] = {writable.data()};
  DISPID member = 0;
  HRESULT found = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member);
  return FAILED(found) ? found : Invoke(object, member, parameters, answer);
}

HRESULT Bind(const std::string& moniker, Reference<IDispatch>& service) {
  Reference<IBindCtx> context;
  HRESULT result = CreateBindCtx(0, context.receive());
  if (FAILED(result)) return result;
  Reference<IMoniker> parsed;
  ULONG eaten = 0;
  result = MkParseDisplayName(context.get(), Wide(moniker).c_str(), &eaten, parsed.receive());
  if (FAILED(result)) return result;
  return parsed->BindToObject(context.get(), nullptr, IID_IDispatch, reinterpret_cast<void**>(service.receive()));
}

HRESULT RunQuery(IDispatch* service, const std::string& query, Variant& set) {
  Variant argument(SysAllocString(Wide(query).c_str()));
  DISPPARAMS parameters = {argument.receive(), nullptr, 1, 0};
  HRESULT result = InvokeByName(service, L"ExecQuery", parameters, set);
  if (FAILED(result)) return result;
  return set.object() == nullptr ? E_NOINTERFACE : S_OK;
}

HRESULT Enumerate(IDispatch* set, Reference<IEnumVARIANT>& items) {
  Variant enumerator;
  HRESULT result = Invoke(set, DISPID_NEWENUM, DISPPARAMS{}, enumerator);
  if (FAILED(result)) return result;
  if (enumerator.unknown() == nullptr) return E_NOINTERFACE;
  return enumerator.unknown()->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(items.receive()));
}

HRESULT NextName(IEnumVARIANT* items, std::string& name) {
  Variant item;
  ULONG fetched = 0;
  HRESULT result = items->Next(1, item.receive(), &fetched);
  if (result != S_OK) return result;
  if (item.object() == nullptr) return E_NOINTERFACE;
  Variant value;
  result = InvokeByName(item.object(), L"Name", DISPPARAMS{}, value);
  if (SUCCEEDED(result)) name = value.text() == nullptr ? "" : Narrow(value.text());
  return FAILED(result) ? result : S_OK;
}

HRESULT CollectNames(const std::string& moniker, const std::string& query, std::vector<std::string>& names) {
  Reference<IDispatch> service;
  HRESULT result = Bind(moniker, service);
  Variant set;
  if (SUCCEEDED(result)) result = RunQuery(service.get(), query, set);
  Reference<IEnumVARIANT> items;
  if (SUCCEEDED(result)) result = Enumerate(set.object(), items);
  if (FAILED(result)) return result;
  std::string name;
  while ((result = NextName(items.get(), name)) == S_OK) names.push_back(name);
  return FAILED(result) ? result : S_OK;  // S_FALSE: behind the last item
}

}  // namespace

platform::Status QueryManagementNames(const std::string& moniker, const std::string& query,
                                      std::vector<std::string>& names) {
  names.clear();
  ComponentModel model;
  std::vector<std::string> found;
  HRESULT result = CollectNames(moniker, query, found);
  if (FAILED(result)) return static_cast<platform::Status>(result);
  names = std::move(found);
  return platform::Status::Ok;
}

}  // namespace win32
