// A desktop, a disk-image folder with a product on it, and the traces an installation leaves.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/flows/WholeLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/InstallerDriver.h"
#include "tests/support/MadeLocale.h"
#include "tests/support/SampleProduct.h"

namespace halvorn {

class FlowFixture : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
  // All of SetUp() but that tests run as the administrator are kept out of all users' applications.
  void bringDesktop();
  // The desktop that the test gets.
  [[nodiscard]] virtual DesktopParts parts() const { return {.accessibility = true}; }

  // Everything that is started from now on runs in the locale ("de_DE") and speaks English. Skips the test
  // when the locale cannot be made here. Every flow does it when KT_FLOW_LOCALE names a locale.
  void useLocale(const std::string& name);

  [[nodiscard]] Desktop& desktop() { return *desktop_; }
  // The folder that stands for the mounted image, with Sample.app 2.0 on it.
  [[nodiscard]] std::filesystem::path image() const { return *image_ / "NAS"; }
  [[nodiscard]] std::string product() const { return image() / "Sample.app"; }
  // ~/Applications, made beforehand: nobody may write where all users' applications are.
  [[nodiscard]] std::filesystem::path applications() const {
    return desktop_->homeFolder() + "/Applications";
  }
  [[nodiscard]] std::string destination() const { return applications() / "Sample.app"; }

  // What the samples wrote: "started 2.0".
  [[nodiscard]] std::string reportFile() const { return *image_ / "report"; }
  [[nodiscard]] std::vector<std::string> reportEntry() const { return {"SAMPLE_REPORT=" + reportFile()}; }
  [[nodiscard]] std::string report() const;
  // A variable the installed product was started with; "" without it, or while the product does not run.
  [[nodiscard]] std::string startedWith(const std::string& variable) const;
  [[nodiscard]] bool startedVersion(const std::string& version) const;

  [[nodiscard]] std::vector<std::string> installerLog() const;
  [[nodiscard]] std::size_t rawLogLineCount() const;
  [[nodiscard]] bool logHas(const std::string& line) const;
  [[nodiscard]] int countOf(const std::string& line) const;
  // The lines, or all of the log, with what stands for the places of this run: <installer>, <image>, <home>.
  [[nodiscard]] Lines whole(const Lines& lines) const;
  [[nodiscard]] Lines wholeLog() const { return whole(installerLog()); }

  // What the log has of the desktop, behind the arguments.
  [[nodiscard]] virtual Lines linesOfDesktop() const { return {}; }
  // From a read-me with a guide to the final message; `meanwhile` runs while the installer shows it.
  void installFromTheReadMe(const std::function<void(InstallerDriver&)>& meanwhile);

  // By which windows a desktop entry knows its program: the installer's, as packages have it, and the installed
  // product's. "" without such a line.
  [[nodiscard]] static std::string windowClassOfInstallersEntry();
  [[nodiscard]] std::string windowClassOfProductsEntry() const;

  // The programs that run from below the folder.
  [[nodiscard]] static std::vector<pid_t> programsBelow(const std::filesystem::path& folder);
  // Ends them; false when there is none.
  [[nodiscard]] static bool endProgramsBelow(const std::filesystem::path& folder);
  [[nodiscard]] static bool sameTree(const std::filesystem::path& a, const std::filesystem::path& b);

  // Starts the program again whenever it ends.
  class Respawner {
   public:
    Respawner(FlowFixture& fixture, const std::filesystem::path& program);
    ~Respawner();
    Respawner(const Respawner&) = delete;
    Respawner& operator=(const Respawner&) = delete;

   private:
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
  };

 private:
  std::unique_ptr<MadeLocale> locale_;
  std::unique_ptr<TemporaryFolder> image_;
  std::unique_ptr<Desktop> desktop_;
};

}  // namespace halvorn
