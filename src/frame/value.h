// Value: one variant for everything that automation carries, with the conversions that hosts rely
// on. A conversion that is not possible throws Error (type mismatch or overflow), which counts as
// a failing read wherever a guarded handle asked for it.
#ifndef ARD_FRAME_VALUE_H_
#define ARD_FRAME_VALUE_H_

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace ard {

struct Null {
  bool operator==(const Null&) const = default;
};

// An amount of money in ten-thousandths, the fixed-point currency of automation.
struct Currency {
  std::int64_t units = 0;
  auto operator<=>(const Currency&) const = default;
};

// Days since 30 December 1899; the fraction is the time of day.
struct Date {
  double days = 0;
  auto operator<=>(const Date&) const = default;
};

// Some automation object, opaque to the portable code.
class Object {
 public:
  virtual ~Object() = default;
};

class Value {
 public:
  using Storage = std::variant<std::monostate, Null, bool, std::uint8_t, std::int16_t, std::int32_t,
                               double, Currency, Date, std::wstring, std::shared_ptr<Object>>;

  Value() = default;
  Value(Null null) : storage_(null) {}
  Value(bool value) : storage_(value) {}
  Value(std::uint8_t value) : storage_(value) {}
  Value(std::int16_t value) : storage_(value) {}
  Value(std::int32_t value) : storage_(value) {}
  Value(double value) : storage_(value) {}
  Value(Currency value) : storage_(value) {}
  Value(Date value) : storage_(value) {}
  Value(std::wstring value) : storage_(std::move(value)) {}
  Value(std::wstring_view value) : storage_(std::in_place_type<std::wstring>, value) {}
  Value(const wchar_t* value) : storage_(std::in_place_type<std::wstring>, value) {}
  Value(const char* value) = delete;  // it would be a Boolean
  Value(std::shared_ptr<Object> value) : storage_(std::move(value)) {}

  // Copied by assignment: when memory runs out for a text, the variant's own copying (of GCC 12)
  // goes on to destroy what it has not made.
  Value(const Value& other) { storage_ = other.storage_; }
  Value(Value&&) = default;
  Value& operator=(const Value&) = default;
  Value& operator=(Value&&) = default;
  ~Value() = default;

  const Storage& storage() const { return storage_; }
  bool is_empty() const { return storage_.index() == 0; }
  bool is_null() const { return std::holds_alternative<Null>(storage_); }
  bool operator==(const Value&) const = default;

  // True is -1; empty is 0, "" or False; doubles round half to even to integers and become text
  // with at most 15 significant digits. Null, objects and text that is no number throw.
  bool ToBoolean() const;
  std::uint8_t ToByte() const;
  std::int16_t ToInteger() const;
  std::int32_t ToLong() const;
  double ToDouble() const;
  Currency ToCurrency() const;
  Date ToDate() const;
  std::wstring ToText() const&;
  std::wstring ToText() &&;

 private:
  Storage storage_;
};

// Converts into the type of `out`; `out` is assigned only when the conversion succeeds.
inline void Convert(Value&& value, bool& out) { out = value.ToBoolean(); }
inline void Convert(Value&& value, std::uint8_t& out) { out = value.ToByte(); }
inline void Convert(Value&& value, std::int16_t& out) { out = value.ToInteger(); }
inline void Convert(Value&& value, std::int32_t& out) { out = value.ToLong(); }
inline void Convert(Value&& value, double& out) { out = value.ToDouble(); }
inline void Convert(Value&& value, Currency& out) { out = value.ToCurrency(); }
inline void Convert(Value&& value, Date& out) { out = value.ToDate(); }
inline void Convert(Value&& value, std::wstring& out) { out = std::move(value).ToText(); }
inline void Convert(Value&& value, Value& out) { out = std::move(value); }

}  // namespace ard

#endif  // ARD_FRAME_VALUE_H_
