#include "core/perfil.h"

#include "core/literais.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace {

// Bytes 80h to 9Fh of Windows-1252; the rest of the page equals Latin-1. Qt carries no such codec of its own.
constexpr std::array<char16_t, 32> pagina1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString ler1252(const QByteArray &bytes) {
    QString texto(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<uchar>(bytes[i]);
        texto[i] = (b >= 0x80 && b < 0xA0) ? QChar(pagina1252[b - 0x80]) : QChar(b);
    }
    return texto;
}

QByteArray escrever1252(const QString &texto) {
    QByteArray bytes;
    bytes.reserve(texto.size());
    for (const QChar c : texto) {
        const char16_t u = c.unicode();
        if (u < 0x80 || (u >= 0xA0 && u < 0x100)) {
            bytes.append(static_cast<char>(u));
        } else {
            const auto *achado = std::find(pagina1252.begin(), pagina1252.end(), u);
            bytes.append(achado == pagina1252.end() ? '?' : static_cast<char>(0x80 + (achado - pagina1252.begin())));
        }
    }
    return bytes;
}

bool eUtf8Valido(const QByteArray &bytes) {
    QStringDecoder leitor(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString ignorado = leitor(bytes);
    return !leitor.hasError();
}

// UTF-16 by hand: the text converters replace what is no valid pair, and a line nobody touches must not change.
QString lerUtf16(const QByteArray &bytes, bool le) {
    QString texto(bytes.size() / 2, Qt::Uninitialized);
    for (qsizetype i = 0; i < texto.size(); ++i) {
        const auto a = static_cast<uchar>(bytes[2 * i]);
        const auto b = static_cast<uchar>(bytes[2 * i + 1]);
        texto[i] = QChar(le ? a | b << 8 : a << 8 | b);
    }
    return texto;
}

QByteArray escreverUtf16(const QString &texto, bool le) {
    QByteArray bytes;
    bytes.reserve(texto.size() * 2);
    for (const QChar c : texto) {
        const char alto = static_cast<char>(c.unicode() >> 8);
        const char baixo = static_cast<char>(c.unicode() & 0xFF);
        bytes.append(le ? baixo : alto).append(le ? alto : baixo);
    }
    return bytes;
}

// "[name]" -> name.
QString nomeDaSeccao(const QString &linha) {
    const QString t = linha.trimmed();
    const qsizetype fecho = t.indexOf(u']');
    return fecho < 0 ? t.mid(1).trimmed() : QStringView(t).mid(1, fecho - 1).trimmed().toString();
}

bool eSeccao(const QString &linha) {
    return QStringView(linha).trimmed().startsWith(u'[');
}

// The name of a "key=value" line; empty for every other one.
QString nomeDaChave(const QString &linha) {
    const QString nome = linha.left(qMax(qsizetype(0), linha.indexOf(u'='))).trimmed();
    return nome.startsWith(u';') ? QString() : nome;
}

QString dobrado(const QString &nome) {
    return nome.trimmed().toCaseFolded();
}

bool entreAspas(const QString &v) {
    return v.size() >= 2 && (v.front() == u'"' || v.front() == u'\'') && v.back() == v.front();
}

// A pair of quotes around a value protects its outer blanks, as the profile calls have it; it is written where
// the value would not be read back as it is.
QString protegido(const QString &valor) {
    if (valor.contains(u'\n') || valor.contains(u'\r'))
        return valor;
    return valor != valor.trimmed() || entreAspas(valor) ? u'"' + valor + u'"' : valor;
}

} // namespace

Perfil::Perfil(const QByteArray &bytes) {
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        m_codificacao = Codificacao::Utf8Marca;
        m_marca = bytes.left(3);
    } else if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        m_codificacao = bytes.startsWith("\xFF\xFE") ? Codificacao::Utf16Le : Codificacao::Utf16Be;
        m_marca = bytes.left(2);
    } else if (!eUtf8Valido(bytes)) {
        m_codificacao = Codificacao::Windows1252;
    }
    separarLinhas(bytes.mid(m_marca.size()));
    indexar();
}

QString Perfil::descodificar(const QByteArray &bytes) const {
    switch (m_codificacao) {
    case Codificacao::Utf8:
    case Codificacao::Utf8Marca:
        break;
    case Codificacao::Utf16Le:
    case Codificacao::Utf16Be:
        return lerUtf16(bytes, m_codificacao == Codificacao::Utf16Le);
    case Codificacao::Windows1252:
        return ler1252(bytes);
    }
    return QString::fromUtf8(bytes);
}

QByteArray Perfil::codificar(const QString &texto) const {
    switch (m_codificacao) {
    case Codificacao::Utf8:
    case Codificacao::Utf8Marca:
        break;
    case Codificacao::Utf16Le:
    case Codificacao::Utf16Be:
        return escreverUtf16(texto, m_codificacao == Codificacao::Utf16Le);
    case Codificacao::Windows1252:
        return escrever1252(texto);
    }
    return texto.toUtf8();
}

// Width of a character and place of its low byte are known when compiling: a language file is split at each start.
template <qsizetype largura, qsizetype baixo>
void Perfil::separarLinhasDe(const QByteArray &bytes) {
    const char *dados = bytes.constData();
    const qsizetype fimDosDados = bytes.size();
    const auto unidade = [=](qsizetype i) -> int {
        if (i + largura > fimDosDados)
            return -1;
        const int alto = largura == 2 ? static_cast<uchar>(dados[i + 1 - baixo]) : 0;
        return alto << 8 | static_cast<uchar>(dados[i + baixo]);
    };
    qsizetype inicio = 0;
    while (inicio < fimDosDados) {
        qsizetype fim = inicio;
        int u = unidade(fim);
        while (u >= 0 && u != '\n' && u != '\r')
            u = unidade(fim += largura);
        qsizetype depois = fimDosDados; // also an odd last byte
        if (u >= 0)
            depois = fim + (u == '\r' && unidade(fim + largura) == '\n' ? 2 : 1) * largura;
        m_linhas.push_back({bytes.mid(inicio, depois - inicio), descodificar(bytes.mid(inicio, fim - inicio))});
        inicio = depois;
    }
}

void Perfil::separarLinhas(const QByteArray &bytes) {
    if (m_codificacao == Codificacao::Utf16Le)
        separarLinhasDe<2, 0>(bytes);
    else if (m_codificacao == Codificacao::Utf16Be)
        separarLinhasDe<2, 1>(bytes);
    else
        separarLinhasDe<1, 0>(bytes);
}

void Perfil::indexar() {
    m_seccoes.clear();
    Seccao *actual = nullptr;
    for (size_t i = 0; i < m_linhas.size(); ++i) {
        const QString &t = m_linhas[i].texto;
        if (eSeccao(t)) {
            const QString nome = dobrado(nomeDaSeccao(t));
            actual = m_seccoes.contains(nome) ? nullptr : &(m_seccoes[nome] = {i, i});
        } else if (actual && !QStringView(t).trimmed().isEmpty()) {
            actual->ultima = i;
        }
    }
}

// A language file has two thousand keys in as many sections as there are forms, and one form asks for its own.
QHash<QString, size_t> &Perfil::chavesDe(const Seccao &seccao) const {
    if (!seccao.chaves) {
        auto &chaves = seccao.chaves.emplace();
        for (size_t i = seccao.linha + 1; i <= seccao.ultima; ++i)
            if (const QString chave = dobrado(nomeDaChave(m_linhas[i].texto));
                !chave.isEmpty() && !chaves.contains(chave))
                chaves.insert(chave, i);
    }
    return *seccao.chaves;
}

QByteArray Perfil::bytes() const {
    QByteArray tudo = m_marca;
    for (const Linha &l : m_linhas)
        tudo += l.bytes;
    return tudo;
}

std::optional<QString> Perfil::valor(const QString &seccao, const QString &chave) const {
    const auto s = m_seccoes.constFind(dobrado(seccao));
    if (s == m_seccoes.constEnd())
        return std::nullopt;
    const QHash<QString, size_t> &chaves = chavesDe(*s);
    const auto k = chaves.constFind(dobrado(chave));
    if (k == chaves.constEnd())
        return std::nullopt;
    const QString &t = m_linhas[*k].texto;
    const QString v = t.mid(t.indexOf(u'=') + 1).trimmed();
    return entreAspas(v) ? v.mid(1, v.size() - 2) : v;
}

QString Perfil::fimDeLinha() const {
    if (m_linhas.empty())
        return u"\r\n"_s;
    const Linha &primeira = m_linhas.front();
    const QString fim = descodificar(primeira.bytes).mid(primeira.texto.size());
    return fim.isEmpty() ? u"\r\n"_s : fim;
}

void Perfil::definir(const QString &seccao, const QString &chave, const QString &valor) {
    const QString fim = fimDeLinha();
    const auto nova = [&](const QString &texto) { return Linha{codificar(texto + fim), texto}; };
    const auto acabar = [&](Linha &linha) { // a last line without its end gets one before another follows
        if (eUtf16() && linha.bytes.size() % 2 != 0)
            linha.bytes.chop(1); // half a character would shift all that follows
        const QString inteira = descodificar(linha.bytes);
        if (inteira.size() == linha.texto.size())
            linha.bytes += codificar(fim);
    };
    const QString linha = chave.trimmed() + u'=' + protegido(valor);
    const auto s = m_seccoes.find(dobrado(seccao));
    bool indiceVale = !valor.contains(u'\n') && !valor.contains(u'\r');
    if (s == m_seccoes.end()) {
        if (!m_linhas.empty())
            acabar(m_linhas.back());
        m_linhas.push_back(nova(u'[' + seccao.trimmed() + u']'));
        m_linhas.push_back(nova(linha));
        const size_t k = m_linhas.size() - 1;
        m_seccoes.insert(dobrado(seccao), {k - 1, k});
    } else if (const auto k = chavesDe(*s).constFind(dobrado(chave)); k != chavesDe(*s).constEnd()) {
        Linha &existente = m_linhas[*k];
        const QString fimActual = descodificar(existente.bytes).mid(existente.texto.size());
        existente.texto = existente.texto.left(existente.texto.indexOf(u'=') + 1) + protegido(valor);
        existente.bytes = codificar(existente.texto + fimActual);
    } else {
        // After the section's last line that says something, so that blank lines stay between sections.
        const size_t nesta = ++s->ultima;
        acabar(m_linhas[nesta - 1]);
        indiceVale = indiceVale && nesta == m_linhas.size();
        m_linhas.insert(m_linhas.begin() + static_cast<std::ptrdiff_t>(nesta), nova(linha));
        chavesDe(*s).insert(dobrado(chave), nesta);
    }
    if (indiceVale)
        return;
    // Lines have moved, or a value with line feeds has become several of them.
    const QByteArray tudo = bytes().mid(m_marca.size());
    m_linhas.clear();
    separarLinhas(tudo);
    indexar();
}

QStringList Perfil::seccoes() const {
    QStringList nomes;
    for (const Linha &l : m_linhas)
        if (eSeccao(l.texto))
            nomes.append(nomeDaSeccao(l.texto));
    return nomes;
}

QStringList Perfil::chaves(const QString &seccao) const {
    QStringList nomes;
    const auto s = m_seccoes.constFind(dobrado(seccao));
    for (size_t i = s == m_seccoes.constEnd() ? m_linhas.size() : s->linha + 1;
         i < m_linhas.size() && !eSeccao(m_linhas[i].texto); ++i)
        if (const QString nome = nomeDaChave(m_linhas[i].texto); !nome.isEmpty())
            nomes.append(nome);
    return nomes;
}
