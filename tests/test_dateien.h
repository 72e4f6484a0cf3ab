// Scratch files and directories for every test directory. Names carry the running test
// and the process, so tests run by ctest in parallel processes never share one.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace test_dateien {

// "kelvaran_<name>_<pid>" in the temporary directory; without a name the running test's.
inline std::filesystem::path Name(std::string name) {
    if (name.empty()) {
        const auto* t = testing::UnitTest::GetInstance()->current_test_info();
        name = std::string(t->test_suite_name()) + "_" + t->name();
    }
    return std::filesystem::temp_directory_path() / ("kelvaran_" + name + "_" + std::to_string(::getpid()));
}

// A fresh directory, removed again with the object.
struct Verzeichnis_t {
    std::filesystem::path pfad;
    explicit Verzeichnis_t(const std::string& name = "") : pfad(Name(name)) {
        std::filesystem::remove_all(pfad);
        std::filesystem::create_directories(pfad);
    }
    ~Verzeichnis_t() {
        std::error_code fehler;
        std::filesystem::remove_all(pfad, fehler);
    }
    Verzeichnis_t(const Verzeichnis_t&) = delete;
    Verzeichnis_t& operator=(const Verzeichnis_t&) = delete;
    std::string operator/(const std::string& name) const { return (pfad / name).string(); }
};

inline void Schreibe(const std::string& name, const std::string& inhalt) {
    std::ofstream(name, std::ios::binary) << inhalt;
}

inline std::string Lies(const std::string& name) {
    std::ifstream ein(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(ein), std::istreambuf_iterator<char>());
}

}  // namespace test_dateien

// One scratch file, removed again with the object (and its ".neu" twin of the book writer).
struct TempDatei {
    std::string name;
    explicit TempDatei(const std::string& endung) : name(test_dateien::Name("").string() + endung) {
        std::remove(name.c_str());
    }
    ~TempDatei() {
        std::remove(name.c_str());
        std::remove((name + ".neu").c_str());
    }
    void schreiben(const std::string& inhalt) const { test_dateien::Schreibe(name, inhalt); }
    std::string lesen() const { return test_dateien::Lies(name); }
    bool da() const { return std::filesystem::exists(name); }
};
