// SPDX-License-Identifier: Apache-2.0
#include "tests/threads/ThreadTable.h"

#include <fstream>
#include <regex>
#include <sstream>
#include <vector>

namespace zeltest {
namespace {

/// The file without comments, without what the preprocessor reads and without macros that declare.
std::string codeOf(const std::string& path) {
    std::ifstream file(path);
    std::string code;
    bool goesOn = false; // a line of the preprocessor's
    for (std::string line; std::getline(file, line);) {
        line = line.substr(0, line.find("//"));
        const bool isDirective = goesOn || line.starts_with("#");
        goesOn = isDirective && line.ends_with("\\");
        static const std::regex macro("^ *(Q_|QML_|ZEL_STYLE_ATTRIBUTES).*");
        if (!isDirective && !std::regex_match(line, macro)) {
            code += line + ' ';
        }
    }
    return code;
}

struct Scope {
    std::string className; ///< empty: a namespace
    bool isPublic = true;
    bool isHidden = false; ///< a class that nobody outside can name
};

class Reader {
public:
    explicit Reader(const std::string& code) : code_(code) {}

    std::set<std::string> read() {
        for (; at_ < code_.size(); ++at_) {
            const char character = code_[at_];
            if (character == '{') {
                open();
            } else if (character == '}') {
                scopes_.pop_back();
                text_.clear();
            } else if (character == ';') {
                note();
                text_.clear();
            } else if (character != ':' || !isLabel()) {
                text_ += character;
            }
        }
        return found_;
    }

private:
    /// Whether the colon ends an access specifier.
    bool isLabel() {
        static const std::regex label(" *(public|private|protected|signals) *");
        std::smatch match;
        if (!std::regex_match(text_, match, label)) {
            return false;
        }
        scopes_.back().isPublic = match[1] == "public" || match[1] == "signals";
        text_.clear();
        return true;
    }

    void open() {
        static const std::regex space(" *(inline )?namespace\\b.*");
        static const std::regex type(" *(?:template *<[^>]*> *)?(class|struct) [^(]*");
        std::smatch match;
        if (std::regex_match(text_, space)) {
            scopes_.push_back({});
        } else if (std::regex_match(text_, match, type)) {
            const bool isHidden = scopes_.back().isHidden || !scopes_.back().isPublic;
            scopes_.push_back({classNameIn(text_), match[1] == "struct", isHidden});
        } else { // a body, an initialiser or a list of enumerators
            note();
            skipBraces();
            text_ = text_.find('(') == std::string::npos ? text_ + ' ' : std::string();
            return;
        }
        text_.clear();
    }

    static std::string classNameIn(const std::string& text) {
        std::istringstream words(text);
        std::string name;
        for (std::string word; words >> word && word != ":";) {
            name = word == "final" ? name : word;
        }
        return name;
    }

    void skipBraces() {
        for (int depth = 1; depth > 0;) {
            ++at_;
            depth += (code_[at_] == '{' ? 1 : 0) - (code_[at_] == '}' ? 1 : 0);
        }
    }

    /// Notes the function that the text declares, if it does.
    void note() {
        static const std::regex other(
            " *(using|typedef|friend|static_assert|enum)\\b.*|.*(= delete|\\boperator\\b).*");
        const Scope& scope = scopes_.back();
        if (!scope.isPublic || scope.isHidden || std::regex_match(text_, other)) {
            return;
        }
        int depth = 0;
        std::string name;
        for (const char character : text_) {
            depth += (character == '<' ? 1 : 0) - (character == '>' ? 1 : 0);
            if (depth == 0 && character == '=') {
                return; // a constant
            }
            if (depth == 0 && character == '(') {
                found_.insert(scope.className.empty() ? name : scope.className + "::" + name);
                return;
            }
            const bool isOfName =
                std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
            name = isOfName ? name + character : std::string();
        }
    }

    const std::string& code_;
    std::size_t at_ = 0;
    std::string text_;
    std::vector<Scope> scopes_{Scope{}};
    std::set<std::string> found_;
};

} // namespace

std::set<std::string> readPublicOperations(const std::string& path) {
    const std::string code = codeOf(path);
    return Reader(code).read();
}

} // namespace zeltest
