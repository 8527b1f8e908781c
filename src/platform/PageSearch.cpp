#include "platform/PageSearch.h"

#include <sqlite3.h>

#include <algorithm>
#include <string_view>

#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {
namespace {

// Around what was found; no page has them.
constexpr char Begin = '\1';
constexpr char End = '\2';

struct Finish {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finish>;

Statement Prepare(sqlite3* database, const char* text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, text, -1, &statement, nullptr) != SQLITE_OK)
        throw RunTimeError(ErrorNumber::OutOfMemory, "The manual cannot be searched.");
    return Statement(statement);
}

void Bind(const Statement& statement, int place, const std::string& text) {
    sqlite3_bind_text(statement.get(), place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

std::string Column(const Statement& statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), column));
    return text == nullptr ? std::string() : std::string(text);
}

bool IsPartOfAWord(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

/// Words and phrases, without quotation marks; signs alone are none. A phrase that is not closed goes to the end.
std::vector<std::string> TermsOf(const std::string& words) {
    std::vector<std::string> terms;
    std::string term;
    bool isPhrase = false;
    const auto finish = [&] {
        if (std::ranges::any_of(term, IsPartOfAWord)) terms.push_back(term);
        term.clear();
    };
    for (const char character : words) {
        const bool isMark = character == '"';
        if (isMark || (character == ' ' && !isPhrase))
            finish();
        else
            term += character;
        if (isMark) isPhrase = !isPhrase;
    }
    finish();
    return terms;
}

std::string Quoted(const std::string& term) { return '"' + term + '"'; }

std::vector<std::string> FoundIn(std::string_view marked) {
    std::vector<std::string> words;
    std::size_t end = 0;
    for (std::size_t at = 0; (at = marked.find(Begin, end)) != std::string_view::npos;) {
        end = marked.find(End, at);
        const std::string word(marked.substr(at + 1, end - at - 1));
        if (std::ranges::find(words, word) == words.end()) words.push_back(word);
    }
    return words;
}

}  // namespace

void PageSearch::Close::operator()(sqlite3* database) const { sqlite3_close(database); }

PageSearch::PageSearch(const std::vector<Page>& pages) {
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    database_.reset(opened);
    // The tokenizer takes the endings of English words off and letters of any case and accent for one.
    const Statement table = Prepare(
        opened, "CREATE VIRTUAL TABLE pages USING fts5(address UNINDEXED, title, body, tokenize = 'porter unicode61')");
    sqlite3_step(table.get());
    for (const Page& page : pages) {
        const Statement row = Prepare(opened, "INSERT INTO pages VALUES (?1, ?2, ?3)");
        Bind(row, 1, page.Address);
        Bind(row, 2, page.Title);
        Bind(row, 3, page.Text);
        sqlite3_step(row.get());
    }
}

std::vector<PageSearch::Hit> PageSearch::Matching(const std::string& question) const {
    // Of a page that says a word often the weight of the title's alone would leave the page about it behind.
    const Statement found = Prepare(database_.get(),
                                    "SELECT address, title, highlight(pages, 2, char(1), char(2)) FROM pages "
                                    "WHERE pages MATCH ?1 ORDER BY rowid IN (SELECT rowid FROM pages WHERE pages MATCH "
                                    "'{title} : (' || ?1 || ')') DESC, bm25(pages, 0, 10, 1), title");
    Bind(found, 1, question);
    std::vector<Hit> hits;
    while (sqlite3_step(found.get()) == SQLITE_ROW)
        hits.push_back({Column(found, 0), Column(found, 1), FoundIn(Column(found, 2))});
    return hits;
}

std::vector<PageSearch::Hit> PageSearch::Find(const std::string& words) const {
    std::string question;
    for (const std::string& term : TermsOf(words)) question += Quoted(term) + ' ';
    if (question.empty()) return {};
    question.pop_back();
    const std::vector<Hit> hits = Matching(question);
    return hits.empty() && IsPartOfAWord(words.back()) ? Matching(question + '*') : hits;
}

std::vector<std::string> PageSearch::Unknown(const std::string& words) const {
    std::vector<std::string> unknown = TermsOf(words);
    std::erase_if(unknown, [this](const std::string& term) { return !Matching(Quoted(term) + '*').empty(); });
    return unknown;
}

}  // namespace vantor
