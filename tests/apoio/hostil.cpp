#include "tests/apoio/hostil.h"

#include "data/dialecto.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolTip>

namespace {

constexpr int muito = 64 * 1024;
constexpr int linhasVistas = 16;         // twice as many as there are kinds of texts
constexpr qsizetype maximoEmLinha = 600; // more is no text to read in one line
constexpr int larguraMaxima = 2000;

QStringList leituras() {
    return {u"Temperaturas"_s,    u"TemperaturasPull"_s,   u"Medias"_s,
            u"Humidade"_s,        u"HumidadePull"_s,       u"Pressao"_s,
            u"PressaoPull"_s,     u"Pontoorvalho"_s,       u"PontoorvalhoPull"_s,
            u"SensUI_Leituras"_s, u"SensUI_LeiturasPull"_s};
}

// Tables and columns of names, found in the database itself: "table.column".
QStringList nomes(const Instalacao &instalacao) {
    return instalacao
        .linha(u"SELECT group_concat(m.name || '.' || c.name) FROM sqlite_master m, pragma_table_info(m.name) c WHERE "
               "m.type = 'table' AND (c.name IN ('Descricao', 'Nome', 'Mac', 'IP_Nome', 'NomeEscala', 'NomeCondicao', "
               "'Nomelogger', 'DescricaoMissao') OR m.name || c.name = 'SensUI_EscalasIdent')"_s)
        .value(0)
        .toString()
        .split(u',');
}

// Halves of pairs as three bytes each, which no encoder writes.
QString bytesDe(const QString &texto) {
    QByteArray bytes;
    for (qsizetype i = 0; i < texto.size(); ++i)
        if (const ushort u = texto[i].unicode(); QChar::isSurrogate(u))
            bytes += QByteArray{}
                         .append(char(0xe0 | u >> 12))
                         .append(char(0x80 | (u >> 6 & 0x3f)))
                         .append(char(0x80 | (u & 0x3f)));
        else
            bytes += QString(texto[i]).toUtf8();
    return QString::fromLatin1(bytes.toHex());
}

// Characters that order, and halves of pairs; a note may hold line ends.
bool limpo(const QString &texto, bool comLinhas) {
    static const QRegularExpression ordens(
        u"[\\x{00}-\\x{09}\\x{0b}-\\x{1f}\\x{7f}-\\x{9f}\\x{61c}\\x{200e}\\x{200f}\\x{202a}-\\x{202e}\\x{2066}-\\x{2069}]"_s);
    return texto.isValidUtf16() && !ordens.match(texto).hasMatch() && (comLinhas || !texto.contains(u'\n'));
}

struct Exame {
    QStringList queixas;

    void texto(const QObject *onde, const char *oque, const QString &t, bool comLinhas = false) {
        if (!limpo(t, comLinhas) || t.size() > (comLinhas ? 10 * maximoEmLinha : maximoEmLinha))
            queixas.append(u"%1 %2 %3: %4 letters: %5"_s
                               .arg(QString::fromUtf8(onde->metaObject()->className()), onde->objectName(),
                                    QString::fromUtf8(oque))
                               .arg(t.size())
                               .arg(t.left(60)));
    }

    void vista(QAbstractItemView *v) {
        const QAbstractItemModel *m = v->model();
        for (int l = 0; m && l < std::min(m->rowCount(), linhasVistas); ++l)
            for (int c = 0; c < m->columnCount(); ++c) {
                const QModelIndex i = m->index(l, c);
                texto(v, "cell", i.data().toString());
                if (const QRect r = v->visualRect(i); v->viewport()->rect().contains(r.center()))
                    dica(v->viewport(), r.center());
            }
    }

    // As the pointer would rest there.
    void dica(QWidget *w, const QPoint &ponto) {
        QHelpEvent evento(QEvent::ToolTip, ponto, w->mapToGlobal(ponto));
        QApplication::sendEvent(w, &evento);
        for (QWidget *topo : QApplication::topLevelWidgets())
            if (auto *etiqueta = qobject_cast<QLabel *>(topo); etiqueta && topo->inherits("QTipLabel"))
                rotulo(etiqueta, etiqueta->text().size() < 1100 ? "tip" : "long tip");
        QToolTip::hideText();
    }

    void rotulo(QLabel *l, const char *oque = "label") {
        texto(l, oque, QString(l->text()).replace(u"\r\n"_s, u"\n"_s), true);
        if (l->isVisible() && l->textFormat() != Qt::PlainText)
            queixas.append(u"may be markup: %1 %2"_s.arg(l->objectName(), l->text().left(60)));
        if (l->isVisible() && l->minimumSizeHint().width() > larguraMaxima)
            queixas.append(u"too wide: %1"_s.arg(l->objectName()));
    }

    void controlo(QWidget *w) {
        texto(w, "accessible name", w->accessibleName());
        texto(w, "accessible description", w->accessibleDescription(), true);
        for (const QAction *a : w->actions())
            texto(w, "action", a->text());
        if (auto *l = qobject_cast<QLabel *>(w))
            rotulo(l);
        else if (const auto *b = qobject_cast<QAbstractButton *>(w))
            texto(w, "button", b->text());
        else if (const auto *g = qobject_cast<QGroupBox *>(w))
            texto(w, "title", g->title());
        else if (const auto *e = qobject_cast<QLineEdit *>(w); e && e->isReadOnly())
            texto(w, "field", e->text());
        else if (auto *v = qobject_cast<QAbstractItemView *>(w); v && v->isVisible())
            vista(v);
        if (const auto *c = qobject_cast<QComboBox *>(w))
            for (int i = 0; i < c->count(); ++i)
                texto(w, "entry", c->itemText(i));
        if (w->isVisible() && !w->toolTip().isEmpty())
            dica(w, w->rect().center());
    }
};

} // namespace

namespace hostil {

QStringList textos() {
    return {u"<img src=/nonexistent><b>forte</b><table>"_s,
            u"\"'; -- \"\"[*]&ficheiro %1 %2"_s,
            u"a\nb\r\nc\u2028d\u0085e\x0b\x0c"_s,
            u"\u202egnp.exe\u202c\u200f\u2067x\u2069"_s,
            QString(u"\x01\x02\x1b[31m\x7f\x08"_s) + QChar(0x9b),
            QString(u"meio "_s) + QChar(0xd800) + u" par "_s + QChar(0xdc00),
            QString(muito, u'W'),
            u"<a href='x'>"_s + QString(muito, u'\n')};
}

void estragar(const Instalacao &instalacao) {
    const QStringList maus = textos();
    // One of them by a number, the first so many.
    const auto escolha = [&](const QString &qual, const QString &fim, qsizetype quantos) -> QString {
        QString sql = u"CASE (%1) % %2"_s.arg(qual).arg(quantos);
        for (qsizetype i = 0; i < quantos; ++i)
            sql += u" WHEN %1 THEN CAST(x'%2' AS TEXT)%3"_s.arg(i).arg(bytesDe(maus[i]), fim);
        return sql + u" END";
    };
    // Alike wherever it stands, and with its old name at the end.
    for (const QString &onde : nomes(instalacao)) {
        const QString nome = onde.section(u'.', 1);
        instalacao.executar(
            u"UPDATE %1 SET %2 = "_s.arg(onde.section(u'.', 0, 0), nome) +
            escolha(u"length(%1) + unicode(substr(%1, -1))"_s.arg(nome), u" || "_s + nome, maus.size()) +
            u" WHERE %1 <> ''"_s.arg(nome));
    }
    for (const auto &[tabela, coluna] :
         {std::pair(u"Poseidons"_s, u"PoseidonIP"_s), std::pair(u"Sensores"_s, u"PoseidonIP"_s),
          std::pair(u"PoseidonInputs"_s, u"PoseidonIP"_s), std::pair(u"PoseidonInputsSpider"_s, u"PoseidonIP"_s),
          std::pair(u"PoseidonOutputs"_s, u"PoseidonIP"_s), std::pair(u"MaskListaAlarmes"_s, u"IP"_s),
          std::pair(u"REGISTO_Inputs"_s, u"DispositivoIP"_s), std::pair(u"REGISTO_Outputs"_s, u"DispositivoIP"_s)})
        instalacao.executar(u"UPDATE %1 SET %2 = %2 || ? WHERE length(%2) > 6"_s.arg(tabela, coluna),
                            QVariantList{QString(maus[0] + maus[3])});
    for (const QString &tabela : leituras())
        instalacao.executar(u"UPDATE %1 SET Observacoes = "_s.arg(tabela) +
                            escolha(u"%1 / 89"_s.arg(dialecto::ordem), u" || coalesce(Observacoes, '')"_s, 6) +
                            u" WHERE " + dialecto::ordem + u" % 89 = 0");
    // A long one is many pages: one or two in a listing are enough.
    for (const QString &tabela : leituras() + QStringList{u"DS1921"_s, u"REGISTO_Inputs"_s, u"REGISTO_Outputs"_s})
        instalacao.executar(
            u"UPDATE %1 SET flag = "_s.arg(tabela) +
            escolha(u"CASE WHEN %1 % 4850 THEN %1 / 97 % 6 ELSE 6 + %1 / 4850 % 2 END"_s.arg(dialecto::ordem), {},
                    maus.size()) +
            u" WHERE " + dialecto::ordem + u" % 97 = 0");
}

QStringList queixas(QWidget *janela) {
    Exame e;
    e.texto(janela, "window title", janela->windowTitle());
    e.controlo(janela);
    const auto todos = janela->findChildren<QWidget *>();
    for (QWidget *w : todos)
        e.controlo(w);
    if (janela->minimumSizeHint().width() > larguraMaxima)
        e.queixas.append(u"the window is %1 wide"_s.arg(janela->minimumSizeHint().width()));
    e.queixas.removeDuplicates();
    return e.queixas.mid(0, 12);
}

} // namespace hostil
