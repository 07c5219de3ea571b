#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "com/automation.h"
#include "com/com_text.h"

namespace ondura {

// A value of Automation, cleared with this object.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  explicit Variant(bool value) : Variant() {
    V_VT(&value_) = VT_BOOL;
    V_BOOL(&value_) = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  explicit Variant(std::int16_t value) : Variant() {
    V_VT(&value_) = VT_I2;
    V_I2(&value_) = value;
  }
  explicit Variant(std::int32_t value) : Variant() {
    V_VT(&value_) = VT_I4;
    V_I4(&value_) = value;
  }
  explicit Variant(std::string_view text) : Variant() {
    Bstr owned(text);
    V_VT(&value_) = VT_BSTR;
    V_BSTR(&value_) = owned.release();
  }
  // An array of VARIANTs with a byte each: scripts can't look into arrays of plain bytes.
  explicit Variant(const std::vector<std::uint8_t>& bytes);
  // A script's array: VARIANTs, or texts where the caller declared texts.
  Variant(const std::vector<std::string>& texts, VARTYPE element);
  ~Variant() { VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  [[nodiscard]] VARIANT* get() { return &value_; }

  // DISP_E_TYPEMISMATCH where the value can't be one of `type`.
  void ConvertTo(VARTYPE type);

  // Hands the value over to the caller of the component.
  void MoveTo(VARIANT& target);

 private:
  VARIANT value_;
};

// Copies what an argument holds or refers to; a reference to nothing is E_POINTER.
void CopyOf(VARIANT* argument, Variant& copy);

// The values of an argument, whether it holds or refers to one. An argument that holds none is empty text.
std::int32_t Int32Of(VARIANT* argument);
std::string TextOf(VARIANT* argument);

// Puts a result into an argument: into the variable that it refers to, in that variable's own type, or into
// the VARIANT itself.
void Assign(VARIANT* argument, Variant&& value);

// Where a text list is wanted an argument may be an array of one dimension, nothing yet, or an object with
// the members Count, Item, Add and Remove of a collection, counted from 1.
std::vector<std::string> ListOf(VARIANT* argument);
void AssignList(VARIANT* argument, const std::vector<std::string>& texts);

}  // namespace ondura
