// Fields of a record that are read into the members of a structure, as a table tells.
#ifndef ARD_ENGINE_FIELD_TABLE_H_
#define ARD_ENGINE_FIELD_TABLE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "engine/handles.h"

namespace ard::engine {

enum class Blanks { kTrim, kKeep };

// A published property, the field that it holds, and where.
template <class Details>
struct FieldProperty {
  std::wstring_view name;
  std::wstring_view field;
  std::variant<std::wstring Details::*, std::int16_t Details::*, double Details::*> member;
  Blanks blanks = Blanks::kKeep;
};

// Reads the fields in the order of the table. One that cannot be read leaves its member as it was,
// and the reading goes on.
template <class Source, class Details, std::size_t size>
void ReadFields(Source& source, const FieldProperty<Details> (&table)[size], Details& details) {
  for (const FieldProperty<Details>& property : table) {
    std::visit(
        [&](auto member) {
          if (source.Get(property.field, details.*member) && property.blanks == Blanks::kTrim) {
            if constexpr (requires { Trim(details.*member); }) Trim(details.*member);
          }
        },
        property.member);
  }
}

}  // namespace ard::engine

#endif  // ARD_ENGINE_FIELD_TABLE_H_
