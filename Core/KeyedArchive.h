// Objects as property lists and back: a dictionary with the name of the class and a value for each key.
//
//   const PropertyDictionary archive = archivedObject(*color);
//   const auto color = KeyedDecoder(archive, classes).decodeRoot<Color>();
//
// An archive may come from anywhere: what is damaged, of an unknown class or nested too
// deeply counts as null. Thread: any.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class KeyedEncoder;

class Archivable {  // what can be archived
 public:
  virtual ~Archivable() = default;
  // The name by which a decoder knows the class.
  [[nodiscard]] virtual Text archivedClass() const = 0;
  virtual void encodeWithCoder(KeyedEncoder& encoder) const = 0;  // writes its values
};

class KeyedEncoder {  // collects the values of one object
 public:
  // Replaces what the key had.
  void encodeText(const Text& text, const Text& key) { values_.insert_or_assign(key, text); }
  void encodeReal(double real, const Text& key) { values_.insert_or_assign(key, real); }
  void encodeReals(const std::vector<double>& reals, const Text& key);
  // Null is written too, as a value that decodes to null.
  void encodeObject(const Archivable* object, const Text& key);

  [[nodiscard]] const PropertyDictionary& values() const { return values_; }  // what was encoded so far

 private:
  PropertyDictionary values_;
};

[[nodiscard]] PropertyDictionary archivedObject(const Archivable& object);  // with its class

class KeyedDecoder {  // reads the values of one object
 public:
  using ObjectPointer = std::shared_ptr<const Archivable>;  // null for what cannot be decoded
  // Makes an object from the values of its archive; null when they are no such object.
  using Maker = std::function<ObjectPointer(const KeyedDecoder& decoder)>;
  using Classes = std::map<Text, Maker>;  // by the name of the class

  // Both must outlive the decoder.
  KeyedDecoder(const PropertyDictionary& archive, const Classes& classes)
      : KeyedDecoder(archive, classes, 0) {}

  // Nothing when the key is missing, or its value is of another kind.
  [[nodiscard]] OptionalText decodeText(const Text& key) const;
  [[nodiscard]] std::optional<double> decodeReal(const Text& key) const;
  [[nodiscard]] std::optional<std::vector<double>> decodeReals(const Text& key) const;
  // Whatever its kind.
  [[nodiscard]] bool containsValueForKey(const Text& key) const { return archive_.contains(key); }

  // The object under the key; null when there is none, or one of another class.
  template <typename Class>
  [[nodiscard]] std::shared_ptr<const Class> decodeObjectOfClass(const Text& key) const {
    return std::dynamic_pointer_cast<const Class>(decodeObject(key));
  }
  // The archive itself as an object, likewise.
  template <typename Class>
  [[nodiscard]] std::shared_ptr<const Class> decodeRoot() const {
    return std::dynamic_pointer_cast<const Class>(decode());
  }

 private:
  KeyedDecoder(const PropertyDictionary& archive, const Classes& classes, int depth)
      : archive_(archive), classes_(classes), depth_(depth) {}
  [[nodiscard]] ObjectPointer decodeObject(const Text& key) const;
  [[nodiscard]] ObjectPointer decode() const;

  const PropertyDictionary& archive_;
  const Classes& classes_;
  const int depth_;
};

}  // namespace halvorn
