#include "data/ligacao.h"

#include "core/datas.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/esquema.h"
#include "data/ficheiroBD.h"
#include "data/ligacao_interno.h"
#include "data/recordset.h"

#include <SQLiteCpp/Exception.h>

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <utility>

namespace {

constexpr int esperaOcupadaMs = 5000;
// A page that leaves the cache and is changed again makes the commit read the whole log anew, so hot pages must stay
// while something is written; reading needs no more than the engine's own measure.
constexpr const char *memoriaParaEscrever = "PRAGMA cache_size = -16384";
constexpr const char *memoriaParaLer = "PRAGMA cache_size = -2000";

int ligarTexto(sqlite3_stmt *instrucao, int posicao, const QByteArray &t) {
    return sqlite3_bind_text(instrucao, posicao, t.constData(), int(t.size()), SQLITE_TRANSIENT);
}

int ligar(sqlite3_stmt *instrucao, int posicao, const QVariant &valor) {
    if (valor.isNull())
        return sqlite3_bind_null(instrucao, posicao);
    switch (valor.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return sqlite3_bind_int64(instrucao, posicao, valor.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return sqlite3_bind_double(instrucao, posicao, valor.toDouble());
    case QMetaType::QDateTime: {
        const QDateTime d = valor.toDateTime();
        return d.isValid() ? ligarTexto(instrucao, posicao, datas::textoBD(d).toUtf8())
                           : sqlite3_bind_null(instrucao, posicao);
    }
    default:
        if (valor.typeId() == qMetaTypeId<Cru>()) {
            const Cru cru = valor.value<Cru>();
            if (!cru.blob)
                return ligarTexto(instrucao, posicao, cru.bytes);
            // No address would bind Null.
            return sqlite3_bind_blob(instrucao, posicao, cru.bytes.isEmpty() ? "" : cru.bytes.constData(),
                                     int(cru.bytes.size()), SQLITE_TRANSIENT);
        }
        return ligarTexto(instrucao, posicao, valor.toString().toUtf8());
    }
}

// What the engine's commonest failures mean to the person who reads them.
struct Explicacao {
    int codigo;
    QStringView chave;
    QStringView omissao;
};
constexpr Explicacao explicacoes[] = {
    {SQLITE_BUSY, u"BDOcupada", u"A base de dados está bloqueada por outro programa"},
    {SQLITE_LOCKED, u"BDOcupadaAqui", u"A base de dados está bloqueada por outra consulta"},
    {SQLITE_READONLY, u"BDSoLeitura", u"A base de dados só pode ser lida"},
    {SQLITE_FULL, u"BDDiscoCheio", u"Não há espaço no disco da base de dados"},
    {SQLITE_IOERR, u"BDDisco", u"Falha de leitura ou escrita no disco da base de dados"},
    {SQLITE_CANTOPEN, u"BDNaoAbriu", u"Não é possível abrir a base de dados"},
    {SQLITE_PERM, u"BDSemPermissao", u"Sem permissão de acesso à base de dados"},
    {SQLITE_CONSTRAINT, u"BDRegra", u"O registo não respeita as regras da tabela"},
    {SQLITE_CORRUPT, u"BDDanificada", u"A base de dados está danificada"},
    {SQLITE_NOTADB, u"BDDanificada", u"A base de dados está danificada"},
};

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

[[noreturn]] void falharFechada() {
    throw Falha(erros::objectoFechado, texto(u"BDFechada"_s, u"A base de dados não está aberta."_s));
}

QString textoDeTrocada(const QString &caminho) {
    return texto(u"BDTrocada"_s,
                 u"O ficheiro da base de dados \"%1\" foi apagado ou substituído enquanto estava aberto. O "
                 "que se vê é do anterior, e o que se alterar não fica gravado. Feche as janelas e abra "
                 "a base de dados de novo em \"Configurações\"."_s)
        .arg(caminho);
}

QString explicar(int codigo) {
    for (const Explicacao &e : explicacoes)
        if (e.codigo == codigo)
            return texto(e.chave.toString(), e.omissao.toString());
    return texto(u"BDRecusou"_s, u"A base de dados recusou o pedido"_s);
}

} // namespace

QString Motor::examinar() {
    // The check reads the whole file, minutes on a large one: it is stopped after a moment, and made only once.
    constexpr qint64 maximoMs = 1000;
    constexpr int instrucoesEntreOlhares = 1000;
    constexpr auto passouDoTempo = [](void *relogio) -> int {
        return static_cast<QElapsedTimer *>(relogio)->elapsed() > maximoMs ? 1 : 0;
    };
    sqlite3 *motor = bd.getHandle();
    QElapsedTimer relogio;
    relogio.start();
    sqlite3_progress_handler(motor, instrucoesEntreOlhares, passouDoTempo, &relogio);
    QString achados;
    sqlite3_stmt *exame = nullptr;
    int codigo = sqlite3_prepare_v2(motor, "PRAGMA quick_check(3)", -1, &exame, nullptr);
    while (codigo == SQLITE_OK || codigo == SQLITE_ROW) {
        codigo = sqlite3_step(exame);
        if (codigo == SQLITE_ROW)
            achados += u' ' + QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(exame, 0)));
    }
    if (codigo == SQLITE_INTERRUPT)
        achados += u' ' + texto(u"BDExameInterrompido"_s, u"(exame interrompido)"_s);
    else if (codigo != SQLITE_DONE)
        achados += u' ' + QString::fromUtf8(sqlite3_errmsg(motor));
    sqlite3_finalize(exame);
    sqlite3_progress_handler(motor, 0, nullptr, nullptr);
    return achados.trimmed();
}

void Motor::falhar(int codigo, const QString &contexto) {
    const int primario = codigo & 0xFF;
    QString descricao = u"%1 (%2)."_s.arg(explicar(primario), QString::fromUtf8(sqlite3_errmsg(bd.getHandle())));
    if (!contexto.isEmpty())
        descricao += u" [%1]"_s.arg(contexto.left(200));
    if (primario == SQLITE_CORRUPT || primario == SQLITE_NOTADB) {
        if (exame.isEmpty())
            exame = examinar();
        descricao += u' ' + texto(u"BDExame"_s, u"Ficheiro: \"%1\". Exame: %2"_s).arg(caminho, exame);
    }
    throw Falha(erros::motorBD + codigo, descricao);
}

void Motor::exigirNoLugar() {
    if (!lugar || lugar->mantem())
        return;
    avisada = true;
    throw Falha(erros::falhaDoFicheiro, textoDeTrocada(caminho));
}

void Motor::exigirSemPasso() const {
    if (transaccoes > 0 && profundidadeDosEventos() > profundidade)
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"BDEmPasso"_s, u"Estão a ser guardados outros dados, e esta alteração não foi gravada. "
                                          "Repita-a quando esse trabalho terminar."_s));
}

void Motor::falharAnulada() {
    throw Falha(erros::falhaDoFicheiro,
                texto(u"BDAnulada"_s, u"A alteração foi anulada pela base de dados; nada foi gravado."_s));
}

sqlite3_stmt *Motor::preparar(const QString &sql, const Parametros &valores) {
    // The engine undoes a transaction by itself on some failures; what follows would then be stored without one.
    if (transaccoes > 0 && sqlite3_get_autocommit(bd.getHandle()) != 0)
        falharAnulada();
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt *instrucao = nullptr;
    const char *resto = nullptr;
    int codigo = sqlite3_prepare_v2(bd.getHandle(), utf8.constData(), int(utf8.size()) + 1, &instrucao, &resto);
    if (codigo != SQLITE_OK)
        falhar(codigo, sql);
    if (!instrucao || sqlite3_bind_parameter_count(instrucao) != valores.size() ||
        !QByteArray(resto).trimmed().isEmpty()) {
        sqlite3_finalize(instrucao);
        throw Falha(erros::chamadaInvalida,
                    u"A consulta não é uma só instrução com %1 valores: %2"_s.arg(valores.size()).arg(sql.left(200)));
    }
    if (sqlite3_stmt_readonly(instrucao) == 0) {
        try {
            exigirSemPasso();
        } catch (...) {
            sqlite3_finalize(instrucao);
            throw;
        }
    }
    int posicao = 0;
    for (const QVariant &valor : valores) {
        codigo = ligar(instrucao, ++posicao, valor);
        if (codigo != SQLITE_OK) {
            sqlite3_finalize(instrucao);
            falhar(codigo, sql);
        }
    }
    return instrucao;
}

int Motor::executarDirecto(const QByteArray &sql) {
    return sqlite3_exec(bd.getHandle(), sql.constData(), nullptr, nullptr, nullptr);
}

Ligacao::Ligacao() : m_esperaMs(esperaOcupadaMs) {}

Ligacao::~Ligacao() {
    if (aberta())
        fechar();
}

bool Ligacao::aberta() const {
    return m_motor != nullptr;
}
bool Ligacao::soLeitura() const {
    return aberta() && m_motor->soLeitura;
}
QString Ligacao::caminho() const {
    return m_caminho;
}

void Ligacao::definirEspera(int ms) {
    m_esperaMs = ms;
    if (aberta())
        sqlite3_busy_timeout(motor().bd.getHandle(), ms);
}

Motor &Ligacao::motor() const {
    if (!aberta())
        falharFechada();
    m_motor->esperar();
    return *m_motor;
}

void Ligacao::fechar() {
    if (!aberta())
        falharFechada();
    // A cursor may keep the file open for a while; the write lock must not stay with it.
    if (motor().transaccoes > 0)
        m_motor->executarDirecto("ROLLBACK");
    m_motor.reset();
}

void Ligacao::abrir(const QString &caminho) {
    if (aberta())
        throw Falha(erros::objectoAberto, u"A base de dados já está aberta."_s);
    const FicheiroBD ficheiro = examinarFicheiroBD(caminho);
    const QByteArray nome = QFile::encodeName(caminho);
    // One thread: the engine's own lock, taken for every column read, would be paid for nothing.
    int modo = (ficheiro.gravavel ? SQLite::OPEN_READWRITE : SQLite::OPEN_READONLY) | SQLite::OPEN_NOMUTEX;
    QByteArray endereco = nome;
    if (ficheiro.imutavel) {
        modo |= SQLite::OPEN_URI;
        endereco = "file:" + nome.toPercentEncoding("/") + "?immutable=1";
    }
    std::shared_ptr<Motor> novo;
    try {
        novo = std::make_shared<Motor>(caminho, endereco.toStdString(), modo, m_esperaMs);
    } catch (const SQLite::Exception &e) {
        throw Falha(
            erros::motorBD + e.getErrorCode(),
            texto(u"BDNaoAbre"_s, u"Não é possível abrir \"%1\" (%2)."_s).arg(caminho, QString::fromUtf8(e.what())));
    }
    novo->soLeitura = !ficheiro.gravavel;
    novo->imutavel = ficheiro.imutavel;
    Recordset rs(novo, novo->preparar(u"PRAGMA user_version"_s, {}));
    const qint64 versao = rs.avancar() ? rs.inteiro(0) : 0;
    if (versao > versaoDoEsquema)
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"BDMaisRecente"_s, u"\"%1\" foi criada por uma versão mais recente (esquema %2; esta versão "
                                              "conhece até ao %3). O ficheiro não foi alterado."_s)
                        .arg(caminho)
                        .arg(versao)
                        .arg(versaoDoEsquema));
    rs.fechar();
    novo->lugar.emplace(nome); // once it was read its log is there, too
    if (ficheiro.gravavel)
        novo->recolha.emplace(
            novo->bd.getHandle(), nome, [&lugar = *novo->lugar] { return lugar.mantem(); }, m_recolha);
    m_motor = novo;
    m_caminho = caminho;
}

void Ligacao::exigirNoLugar() const {
    motor().exigirNoLugar();
}

QString Ligacao::novidadeDoLugar() {
    if (!aberta() || m_motor->transaccoes > 0 || m_motor->emConfirmacao) // its confirmation will say so
        return {};
    const bool mantem = m_motor->lugar->mantem();
    const bool novidade = !mantem && !m_motor->avisada;
    m_motor->avisada = !mantem;
    return novidade ? textoDeTrocada(m_caminho) : QString();
}

void Ligacao::definirRecolha(const Recolha::Medidas &medidas) {
    m_recolha = medidas;
}

Recordset Ligacao::consultar(const QString &sql, const Parametros &valores) {
    // A file read without locks must be opened again once somebody starts to write to it.
    if (motor().imutavel && QFile::exists(m_caminho + u"-wal"_s)) {
        fechar();
        abrir(m_caminho);
    }
    return {m_motor, motor().preparar(sql, valores)};
}

qint64 Ligacao::executar(const QString &sql, const Parametros &valores) {
    Recordset rs = consultar(sql, valores);
    sqlite3 *bd = motor().bd.getHandle();
    const bool sozinha = rs.escreve() && sqlite3_get_autocommit(bd) != 0; // in a transaction its end is looked at
    if (sozinha)
        motor().exigirNoLugar();
    const qint64 antes = sqlite3_total_changes64(bd);
    while (rs.avancar()) {
    }
    if (sozinha && sqlite3_get_autocommit(bd) != 0)
        motor().exigirNoLugar();
    return sqlite3_total_changes64(bd) - antes;
}

void Ligacao::executarGuiao(const QString &sql) {
    motor().exigirNoLugar();
    motor().exigirSemPasso();
    const int codigo = motor().executarDirecto(sql.toUtf8());
    if (codigo != SQLITE_OK)
        motor().falhar(codigo, sql);
    motor().exigirNoLugar();
}

Transaccao::Transaccao(Ligacao &ligacao) : m_ligacao(ligacao) {
    m_ligacao.motor().exigirSemPasso();
    int &nivel = m_ligacao.motor().transaccoes;
    if (nivel == 0) {
        m_ligacao.motor().executarDirecto(memoriaParaEscrever);
        m_ligacao.motor().profundidade = profundidadeDosEventos();
    }
    // The outermost one takes the write lock at once, so that it cannot fail half way for want of it.
    m_ligacao.executar(nivel == 0 ? u"BEGIN IMMEDIATE"_s : u"SAVEPOINT n%1"_s.arg(nivel));
    ++nivel;
    m_motor = m_ligacao.m_motor;
}

void Transaccao::confirmar() {
    const auto motor = m_motor.lock();
    if (!motor || motor != m_ligacao.m_motor)
        throw Falha(
            erros::objectoFechado,
            texto(u"BDFechadaAMeio"_s, u"A base de dados foi fechada a meio da alteração; nada foi gravado."_s));
    const int nivel = motor->transaccoes - 1;
    if (nivel == 0)
        motor->exigirNoLugar(); // undone otherwise
    m_ligacao.executar(nivel == 0 ? u"COMMIT"_s : u"RELEASE n%1"_s.arg(nivel));
    motor->transaccoes = nivel;
    m_pendente = false;
    if (nivel > 0)
        return;
    motor->executarDirecto(memoriaParaLer);
    motor->exigirNoLugar();
}

void Transaccao::confirmar(const std::function<void()> &passar) {
    const auto motor = m_motor.lock();
    if (!motor || motor != m_ligacao.m_motor || motor->transaccoes > 1)
        return confirmar();
    motor->exigirNoLugar();
    int codigo = SQLITE_OK;
    const auto gravar = [&, antes = estado().ambiente.aoConfirmar] {
        if (antes)
            antes();
        // Most of it before the commit itself, during which other programs cannot write.
        sqlite3_db_cacheflush(motor->bd.getHandle());
        const int diario =
            ::open(QByteArray(QFile::encodeName(motor->caminho) + "-wal").constData(), O_RDONLY | O_CLOEXEC);
        if (diario >= 0) {
            ::fdatasync(diario);
            ::close(diario);
        }
        codigo = motor->executarDirecto("COMMIT");
        if (codigo == SQLITE_OK) {
            motor->transaccoes = 0;
            m_pendente = false;
            motor->executarDirecto(memoriaParaLer);
        }
        motor->emConfirmacao = false;
        motor->emConfirmacao.notify_all();
    };
    motor->emConfirmacao = true;
    {
        const std::jthread disco(gravar); // waited for on every way out
        while (motor->emConfirmacao) {
            passar();
            QThread::msleep(1);
        }
    }
    if (codigo != SQLITE_OK)
        motor->falhar(codigo, u"COMMIT"_s);
    motor->exigirNoLugar();
    QElapsedTimer desdeAConfirmacao; // a reader that holds the log back is not waited for longer
    desdeAConfirmacao.start();
    while (motor->recolha && motor->recolha->atrasada() && desdeAConfirmacao.elapsed() < esperaOcupadaMs) {
        passar();
        QThread::msleep(1);
    }
}

Transaccao::~Transaccao() {
    const auto motor = m_motor.lock();
    if (!m_pendente || !motor || motor != m_ligacao.m_motor) // closing has undone it
        return;
    const int nivel = --motor->transaccoes;
    // A failure here means that the engine has undone it by itself already.
    const QByteArray ponto = QByteArray("n") + QByteArray::number(nivel);
    motor->executarDirecto(nivel == 0 ? QByteArray("ROLLBACK")
                                      : QByteArray("ROLLBACK TO " + ponto + "; RELEASE " + ponto));
    if (nivel == 0)
        motor->executarDirecto(memoriaParaLer);
}

Ligacao &ligacaoPartilhada() {
    if (!estado().cnBD)
        estado().cnBD = std::make_unique<Ligacao>();
    return static_cast<Ligacao &>(*estado().cnBD);
}

Ligacao &cnBD() {
    Ligacao &ligacao = ligacaoPartilhada();
    if (!ligacao.aberta())
        falharFechada();
    return ligacao;
}
