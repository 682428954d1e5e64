// What the forms of HTML pages differ in: the classic one, and the portable one, which follows the
// standard to the letter and is made for screens of all sizes, for paper and for those who listen.
#pragma once

#include "generators/descriptions/descriptionform.h"

#include <QString>

struct HtmlForm : DescriptionForm {
    /// Tables tell in a caption what they are of, and have no rows without cells.
    bool hasCaptions = false;
    bool hasHeading = false;
    bool hasUnknownFacts = false; ///< rows and a comment even if the project says nothing
    bool namesTwice = false;      ///< what stands twice in a list is described twice
    const char *styles = "";      ///< lines

    /// A text for a cell or a heading, a description, and a text for the inside of a comment.
    QString (*text)(const QString &text) = nullptr;
    QString (*description)(const QString &text) = nullptr;
    QString (*comment)(const QString &text) = nullptr;
};

const HtmlForm &classicHtml();
const HtmlForm &portableHtml();
