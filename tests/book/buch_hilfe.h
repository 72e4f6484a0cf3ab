// Scratch files and small game collections for the book tests.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A scratch file named after the running test, so that tests run by ctest in
// parallel processes never share one.
struct TempDatei {
    std::string name;
    explicit TempDatei(const std::string& endung) {
        const auto* t = testing::UnitTest::GetInstance()->current_test_info();
        name = std::filesystem::temp_directory_path() /
               (std::string("kelvaran_") + t->test_suite_name() + "_" + t->name() + endung);
        std::remove(name.c_str());
    }
    ~TempDatei() {
        std::remove(name.c_str());
        std::remove((name + ".neu").c_str());
    }
    void schreiben(const std::string& inhalt) const { std::ofstream(name, std::ios::binary) << inhalt; }
    std::string lesen() const {
        std::ifstream ein(name, std::ios::binary);
        std::stringstream s;
        s << ein.rdbuf();
        return s.str();
    }
    bool da() const { return std::filesystem::exists(name); }
};

// One game in export form.
inline std::string Partie(const std::string& zuege, const std::string& ergebnis, const std::string& mehrTags = "") {
    return "[White \"w\"]\n[Black \"s\"]\n[Result \"" + ergebnis + "\"]\n" + mehrTags + "\n" + zuege + " " + ergebnis +
           "\n\n";
}
