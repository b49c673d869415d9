#include "poseidon/substituidas2251.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/falha.h"
#include "poseidon/ficheiroSeguro.h"

#include <QCryptographicHash>

#include <algorithm>
#include <charconv>
#include <utility>

namespace substituidas2251 {

namespace {

constexpr qsizetype pedaco = 128 * 1024;

struct Marca {
    char sinal, letra;
};
constexpr Marca marcas[] = {{'\\', '\\'}, {'\t', 't'}, {'\n', 'n'}, {'\r', 'r'}, {'\0', '0'}};

QByteArray marcado(const QByteArray &texto) {
    QByteArray t;
    t.reserve(texto.size() + 1);
    for (const char c : texto) {
        const auto *marca = std::find_if(std::begin(marcas), std::end(marcas), [c](Marca m) { return m.sinal == c; });
        if (marca == std::end(marcas))
            t += c;
        else
            (t += '\\') += marca->letra;
    }
    return t;
}

bool desmarcar(QByteArrayView campo, QByteArray &texto) {
    texto.clear();
    for (qsizetype i = 0; i < campo.size(); ++i) {
        if (campo[i] != '\\') {
            texto += campo[i];
            continue;
        }
        if (++i == campo.size())
            return false;
        const auto *marca =
            std::find_if(std::begin(marcas), std::end(marcas), [c = campo[i]](Marca m) { return m.letra == c; });
        if (marca == std::end(marcas))
            return false;
        texto += marca->sinal;
    }
    return true;
}

template <typename Numero>
bool numero(QByteArrayView texto, Numero &n) {
    const auto [fim, erro] = std::from_chars(texto.begin(), texto.end(), n);
    return erro == std::errc() && fim == texto.end();
}

} // namespace

QByteArray escrita(const Celula &celula) {
    switch (celula.tipo) {
    case Celula::Tipo::Inteiro:
        return 'I' + QByteArray::number(celula.inteiro);
    case Celula::Tipo::Real: {
        char texto[32];
        const auto fim = std::to_chars(std::begin(texto), std::end(texto), celula.real);
        return 'R' + QByteArray(texto, fim.ptr - texto);
    }
    case Celula::Tipo::Texto:
        return 'T' + marcado(celula.bytes);
    case Celula::Tipo::Bloco:
        return 'B' + marcado(celula.bytes);
    case Celula::Tipo::Nulo:
        break;
    }
    return "N";
}

bool lida(QByteArrayView campo, Celula &celula) {
    celula = {};
    if (campo.isEmpty())
        return false;
    const QByteArrayView resto = campo.sliced(1);
    switch (campo[0]) {
    case 'N':
        return resto.isEmpty();
    case 'I':
        celula.tipo = Celula::Tipo::Inteiro;
        return numero(resto, celula.inteiro);
    case 'R':
        celula.tipo = Celula::Tipo::Real;
        return numero(resto, celula.real);
    case 'T':
    case 'B':
        celula.tipo = campo[0] == 'T' ? Celula::Tipo::Texto : Celula::Tipo::Bloco;
        return desmarcar(resto, celula.bytes);
    default:
        return false;
    }
}

struct Escritor::Soma {
    QCryptographicHash soma{QCryptographicHash::Sha256};
};

Escritor::Escritor(const QString &nome, const QString &unidade, std::function<void()> passar)
    : m_ficheiro(std::make_unique<FicheiroSeguro>(nome, std::move(passar))), m_unidade(unidade),
      m_contas(std::make_unique<Soma>()) {}

Escritor::~Escritor() {
    if (m_naSeccao && m_antes > 0)
        m_ficheiro->recuar(m_antes);
}

QString Escritor::nome() const {
    return m_leituras > 0 ? m_ficheiro->nome() : QString();
}

void Escritor::exigir(bool feito) {
    if (feito)
        return;
    m_falhou = true;
    throw Falha(erros::falhaDoFicheiro, m_ficheiro->nome() + u": "_s + m_ficheiro->erro());
}

void Escritor::iniciarSeccao(const QString &tabela, const QStringList &colunas) {
    m_inicioDaSeccao = QByteArray(cabecaDaTabela) + '\t' + tabela.toUtf8() + '\t' + colunas.join(u'\t').toUtf8() + '\n';
}

void Escritor::juntar(const QByteArray &texto) {
    m_contas->soma.addData(texto);
    m_porEscrever += texto;
}

void Escritor::iniciarGrupo() {
    if (!m_naSeccao) {
        if (!m_ficheiro->isOpen()) {
            exigir(m_ficheiro->abrir());
            m_porEscrever = QByteArray(forma) + '\t' + marcado(m_unidade.toUtf8()) + '\t' +
                            datas::textoBD(estado().ambiente.agora()).toUtf8() + '\n';
        } else {
            m_antes = m_ficheiro->tamanho();
        }
        m_naSeccao = true;
        m_contas->soma.reset();
        m_linhas = 0;
        juntar(m_inicioDaSeccao);
    }
    juntar(QByteArray(grupo) + '\n');
}

void Escritor::linha(Especie especie, qint64 lugar, const std::vector<Celula> &celulas, const Celula *flag) {
    QByteArray texto(1, char(especie));
    texto += '\t' + QByteArray::number(lugar);
    if (flag)
        texto += '\t' + escrita(*flag);
    for (const Celula &celula : celulas)
        texto += '\t' + escrita(celula);
    texto += '\n';
    juntar(texto);
    ++m_linhas;
    m_leituras += especie == Substituida || especie == Apagada ? 1 : 0;
}

void Escritor::despejar() {
    if (m_porEscrever.size() < pedaco)
        return;
    const QByteArray agora = std::exchange(m_porEscrever, {});
    exigir(m_ficheiro->write(agora) == agora.size());
}

void Escritor::terminarSeccao() {
    if (!m_naSeccao)
        return;
    m_porEscrever +=
        QByteArray(fim) + '\t' + QByteArray::number(m_linhas) + '\t' + m_contas->soma.result().toHex() + '\n';
    const QByteArray agora = std::exchange(m_porEscrever, {});
    exigir(m_ficheiro->write(agora) == agora.size() && m_ficheiro->manter());
    m_naSeccao = false;
}

} // namespace substituidas2251
