#pragma once

#include "documents.h"
#include "text/positions.h"

#include <QAbstractListModel>
#include <QDockWidget>
#include <QListView>
#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// Where a block stands after the pass, in the story of that number; see word::Document.
struct BlockPlace {
  std::int32_t story = 0;
  text::Span span;
};

/// The blocks that the last pass over a document came to, listed below the documents. Choosing a row shows
/// its block.
class FoundBlocks final : public QDockWidget {
 public:
  explicit FoundBlocks(Documents& documents);

  /// The list is empty until the next pass over a document ends.
  void clear();
  /// A pass over the document has ended. A list that the user is to see comes into sight.
  void list(OpenDocument& document, std::vector<BlockPlace> blocks, bool comesIntoSight);

 private:
  /// Texts are read only for rows in sight: there may be as many rows as words.
  class Rows final : public QAbstractListModel {
   public:
    void set(OpenDocument* document, std::vector<BlockPlace> blocks);
    OpenDocument* document() const { return document_; }
    const BlockPlace& block(int row) const { return blocks_[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

   private:
    OpenDocument* document_ = nullptr;  ///< lives as long as there are rows
    std::vector<BlockPlace> blocks_;
    std::vector<std::string> places_;  ///< what its stories are called
  };

  void show(int row);

  Documents& documents_;
  Rows rows_;
  QListView* view_ = nullptr;
  QMetaObject::Connection closes_;  ///< tells when the document of the list has gone
};

}  // namespace pluvo::desktop
