// A color that writes down what it is asked and answers with numbers of its own: each answer contains the
// number it was made with.
#pragma once

#include <string>
#include <vector>

#include "Platform/color/Color.h"

namespace halvorn {

class FakeColor : public Color {
 public:
  explicit FakeColor(int number) : number_(number) {}

  const ColorSpace* colorSpace() const override {
    note("colorSpace");
    return number_ % 2 == 0 ? &ColorSpace::sRGB() : &ColorSpace::displayP3();
  }
  ColorPointer colorUsingColorSpace(const ColorSpace& space) const override {
    return derived("colorUsingColorSpace: " + space.name().bytes());
  }
  OptionalText colorSpaceName() const override { return text("colorSpaceName"); }
  ColorPointer colorUsingColorSpaceName(const Text& name) const override {
    return derived("colorUsingColorSpaceName: " + name.bytes());
  }
  int numberOfComponents() const override { return note("numberOfComponents"), number_; }
  std::vector<double> getComponents() const override { return {real("getComponents"), 0.5}; }
  double redComponent() const override { return real("redComponent"); }
  double greenComponent() const override { return real("greenComponent"); }
  double blueComponent() const override { return real("blueComponent"); }
  std::optional<RedGreenBlueAlpha> getRed() const override { return {{real("getRed"), 0.1, 0.2, 0.3}}; }
  double hueComponent() const override { return real("hueComponent"); }
  double saturationComponent() const override { return real("saturationComponent"); }
  double brightnessComponent() const override { return real("brightnessComponent"); }
  std::optional<HueSaturationBrightnessAlpha> getHue() const override {
    return {{real("getHue"), 0.1, 0.2, 0.3}};
  }
  double whiteComponent() const override { return real("whiteComponent"); }
  std::optional<WhiteAlpha> getWhite() const override { return {{real("getWhite"), 0.1}}; }
  double cyanComponent() const override { return real("cyanComponent"); }
  double magentaComponent() const override { return real("magentaComponent"); }
  double yellowComponent() const override { return real("yellowComponent"); }
  double blackComponent() const override { return real("blackComponent"); }
  std::optional<CyanMagentaYellowBlackAlpha> getCyan() const override {
    return {{real("getCyan"), 0.1, 0.2, 0.3, 0.4}};
  }
  double alphaComponent() const override { return real("alphaComponent"); }
  std::optional<DeviceColor> CGColor() const override { return {{real("CGColor"), 0.1, 0.2, 0.3}}; }
  OptionalText catalogNameComponent() const override { return text("catalogNameComponent"); }
  OptionalText colorNameComponent() const override { return text("colorNameComponent"); }
  OptionalText localizedCatalogNameComponent() const override {
    return text("localizedCatalogNameComponent");
  }
  OptionalText localizedColorNameComponent() const override { return text("localizedColorNameComponent"); }
  void setStroke(GraphicsContext& context) const override {
    context.setStrokeColor({real("setStroke"), 0, 0, 1});
  }
  void setFill(GraphicsContext& context) const override { context.setFillColor({real("setFill"), 0, 0, 1}); }
  void set(GraphicsContext& context) const override {
    context.setStrokeColor({real("set"), 0, 0, 1});
    context.setFillColor({static_cast<double>(number_), 0, 0, 1});
  }
  ColorPointer highlightWithLevel(double level) const override {
    return derived("highlightWithLevel", level);
  }
  ColorPointer shadowWithLevel(double level) const override { return derived("shadowWithLevel", level); }
  ColorPointer colorWithAlphaComponent(double alpha) const override {
    return derived("colorWithAlphaComponent", alpha);
  }
  ColorPointer blendedColorWithFraction(double fraction, const ColorPointer& ofColor) const override {
    return derived(ofColor ? "blendedColorWithFraction" : "blendedColorWithFraction of none", fraction);
  }
  ColorPointer colorWithSystemEffect(ColorSystemEffect effect) const override {
    return derived("colorWithSystemEffect", static_cast<double>(effect));
  }
  Text archivedClass() const override { return "FakeColor"; }
  void encodeWithCoder(KeyedEncoder& encoder) const override { encoder.encodeReal(number_, "number"); }

  [[nodiscard]] int number() const { return number_; }
  mutable std::vector<std::string> asked;

 private:
  void note(const std::string& question) const { asked.push_back(question); }
  double real(const std::string& question) const { return note(question), number_; }
  OptionalText text(const std::string& question) const {
    note(question);
    return Text(question + " " + std::to_string(number_));
  }
  ColorPointer derived(const std::string& question) const {
    note(question);
    return std::make_shared<FakeColor>(number_ + 1000);
  }
  ColorPointer derived(const std::string& question, double argument) const {
    return derived(question + " " + std::to_string(argument).substr(0, 4));
  }

  int number_;
};

}  // namespace halvorn
