#pragma once

#include "ContactFile.h"

/// Reads vCards 2.1, 3.0 and 4.0, also several of different versions in one file.
namespace VCardReader {

/// Whether a card begins before anything else.
[[nodiscard]] bool IsVCard(const QByteArray &bytes);

/// A row for each card, in order, under the headings Name, Mobile, Phone, Home or work and Groups, of which those
/// stay out that no card fills. The name is FN, else N (first and last), else the organisation or the e-mail address.
/// Several numbers of a cell are joined by " ::: "; fax and pager numbers stay out. Groups, joined by ";", are
/// CATEGORIES and the names of cards that are groups of others, which give no row.
/// Cards within cards are passed over, and so are values that are too damaged to read. A card that another begins in
/// before it ended counts as whole; one that the file ends in raises what ContactFile::Read tells.
[[nodiscard]] ContactFile::Content Read(const QByteArray &bytes);

} // namespace VCardReader
