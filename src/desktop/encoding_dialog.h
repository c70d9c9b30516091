#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <string>

namespace pluvo::desktop {

/// Asks in which encoding a text file is to be read, over a list and a sample that follows it. The sentence
/// says why it is asked; the encoding is chosen at first, where it is in the list. Nothing where the user
/// would rather not open the file.
std::optional<std::string> askForEncoding(QWidget* owner, const std::string& path, const QString& sentence,
                                          const std::string& encoding);

}  // namespace pluvo::desktop
