#pragma once

#include <memory>
#include <string>
#include <vector>

struct sqlite3;

namespace vantor {

/// Finds pages of English text by their words: a word stands for all its forms ("boundary" for "boundaries"), never for
/// a part of another one; words in quotation marks are a phrase. What is asked for is UTF-8.
class PageSearch {
public:
    struct Page {
        std::string Address, Title, Text;
    };
    struct Hit {
        std::string Address, Title;
        /// The words and phrases that were found in its text, as they are written there.
        std::vector<std::string> Words;
    };

    /// Error 7 where memory does not hold the pages.
    explicit PageSearch(const std::vector<Page>& pages);

    /// The pages that have all the words: first those that have them all in their title, then by how often they stand
    /// there for the length of the page, a word of the title counting for ten. Where no page has them, the last word is
    /// taken for the beginning of one, as it is while it is being typed.
    std::vector<Hit> Find(const std::string& words) const;
    /// Those of the words and phrases that are on no page, not even as a beginning.
    std::vector<std::string> Unknown(const std::string& words) const;

private:
    std::vector<Hit> Matching(const std::string& question) const;

    struct Close {
        void operator()(sqlite3* database) const;
    };
    std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace vantor
