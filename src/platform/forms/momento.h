#pragma once

class QDateEdit;
class QDateTimeEdit;

namespace momento {

// A click into a date or a time selects the part under it, so that what is typed next takes its place.
void escolherParteAoClicar(QDateTimeEdit *edicao);

// Gives it a calendar in the language of the program.
void comCalendario(QDateEdit *edicao);

} // namespace momento
