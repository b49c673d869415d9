#pragma once

class QDateTimeEdit;

namespace momento {

// A click into a date or a time selects the part under it, so that what is typed next takes its place.
void escolherParteAoClicar(QDateTimeEdit *edicao);

} // namespace momento
