#include "matrix/operations.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/connect_command.h"

#include "config/host_types.h"
#include "ftp/control/remote_commands.h"
#include "ftp/data/data_send.h"
#include "ftp/login/login.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/host_detection.h"
#include "listing/listing_driver.h"
#include "listing/recursive_count.h"
#include "listing/symlinks.h"
#include "transfer/get_item.h"

namespace matrix {
namespace {

constexpr char kPubLines[] = "-rw-r--r-- 1 a b 4 Jan 2 2001 a.txt\r\ndrwxr-xr-x 1 a b 4 Jan 2 2001 deep\r\n";
constexpr char kGoneLine[] = "-rw-r--r-- 1 a b 4 Jan 2 2001 /gone\r\n";
constexpr char kLine[] = "-rw-r--r-- 1 a b 4 Jan 2 2001 half\r\n";

constexpr Step Reply(const char* verb, const char* good, int nth = 1) {
    return {verb, nth, Part::Reply, good};
}

constexpr Step Tolerant(Step step, Tolerates what, Step::Loss loss = Step::Loss::GoesOn) {
    step.tolerates = what;
    step.loss = loss;
    return step;
}

constexpr Step WithText(Step step) {
    step.textCounts = true;
    return step;
}

// PORT and a transfer command with everything that belongs to it.
std::vector<Step> Transfer(const char* verb, const char* data, int nth = 1, const char* whole = nullptr) {
    return {
        Reply("PORT", "200 PORT command successful.", nth),
        {verb, nth, Part::Preliminary, "150 Opening data connection."},
        {verb, nth, Part::Opening, "", Tolerates::Nothing, false, data},
        {verb, nth, Part::Copying, "", Tolerates::Nothing, false, data},
        {verb, nth, Part::Final, "226 Transfer complete.", Tolerates::Nothing, false, whole != nullptr ? whole : data}};
}

Step TypeStep(const char* verb = "TYPE") {
    return Tolerant(Reply(verb, "200 Type set."), Tolerates::AnyReply);
}

std::vector<Step> operator+(std::vector<Step> first, const std::vector<Step>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

int Same(const Step&, int raw, bool) {
    return raw;
}
int Truth(const Step&, int raw, bool) {
    return raw == FTP_COMPLETE ? FTP_COMPLETE : 0;
}
int ClassOnly(const Step&, int raw, bool) {
    if (raw == kFileUnavailable) return FTP_ERROR;
    return raw >= 1 && raw <= 5 ? raw : 0;
}
// A folder that could not be entered was not listed.
int ListingResult(const Step& step, int raw, bool) {
    return std::string(step.verb) == "CWD" ? 0 : raw;
}
// Without the server the walk ends with its own error as soon as it is back in the folder above.
int WalkResult(const Step& step, int raw, bool lost) {
    if (step.nth > 1 && lost) return FTP_ERROR;
    return ListingResult(step, raw, lost);
}
// From the data connection on only its success counts.
int UploadResult(const Step& step, int raw, bool) {
    return step.part == Part::Copying || step.part == Part::Final ? FTP_ERROR : raw;
}

int AsResult(bool succeeded) {
    return succeeded ? FTP_COMPLETE : 0;
}

void Nothing(Scene&) {}

bool Connected(Scene& s) {
    return s.site->bConnected != 0 && HasControlSocket(s.site);
}
int LogIn(Scene& s) {
    gSession.activeSite = s.site;
    SetConnecting(true);
    const bool connected = DoConnect2(s.site);
    SetConnecting(false);
    return AsResult(connected);
}

int Upload(Scene& s) {
    return DlgSendFile(s.site, s.upload, s.h.reply, 'I', gSession.transferAbort) ? FTP_COMPLETE : s.upload.iRetCode;
}
bool Uploaded(Scene& s) {
    return s.h.server.FileBytes("/up") == std::string(kUploadSize, 'u');
}

int ResolveLink(Scene& s, const char* name) {
    const LVobjectPtr entry(AllocateLVobject(nullptr));
    entry->name = OwnedText::Copy(name);
    entry->type = kKindLink;
    int result = 0;
    const SymLinkItemPtr target = Zarn_ResolveSymLink(s.site, "/", entry.get(), result);
    return AsResult(target && target->object != nullptr);
}

int Count(Scene& s) {
    s.folders = s.files = 0;
    s.bytes = 0;
    s.transferAborted = false;
    return FtpRecurseDirContents(AllocateContents("/pub", s.transferAborted, s.folders, s.files, nullptr, s.bytes));
}

int Download(Scene& s) {
    const RunningJobScope scope(s.job);
    const bool got = DlgGetFile(&s.download, gSession.transferAbort);
    return got ? FTP_COMPLETE : s.download.iRetCode;
}

constexpr Step kWelcomeStep = Reply(kWelcome, "220 ready");
constexpr Step kUserStep = Reply("USER", "331 Password required.");
constexpr Step kPassStep = Reply("PASS", "230 Logged on.");
constexpr Step kPwdStep = WithText(Reply("PWD", "257 \"/\" is the current directory."));

std::vector<Operation> ConnectOperations() {
    const auto askAccount = [](Scene& s) {
        s.h.server.AskAccount(true);
        s.h.view.AnswerNext("account");
    };
    const auto askPassword = [](Scene& s) {
        s.site->pszPWD.reset();
        s.h.view.AnswerNext("secret");
    };
    const auto gateway = [](Scene& s) {
        s.site->bUseGateway = 1;
        s.site->pszGateHost = OwnedText::Copy("gate");
        s.site->pszGateUID = OwnedText::Copy("guard");
        s.site->pszGatePWD = OwnedText::Copy("open");
    };
    const auto connect = [](Scene& s) {
        Zarn_IdmConnect(s.site);
        return AsResult(s.site->bConnected != 0 && s.site->pszCurrentDir);
    };
    const Step user2 = Reply("USER", "331 Password required.", 2);
    const Step pass2 = Reply("PASS", "230 Logged on.", 2);
    return {
        {"connect", true, true, {kWelcomeStep, kUserStep, kPassStep, kPwdStep}, Nothing, connect, Connected, Truth},
        {"connect to a folder",
         true,
         true,
         {kWelcomeStep, kUserStep, kPassStep,
          Tolerant(Reply("CWD", "250 Directory changed."), Tolerates::AnyReply, Step::Loss::EndsLater)},
         [](Scene& s) { s.site->pszDir = OwnedText::Copy("/pub"); },
         connect,
         Connected,
         Truth},
        {"log-in", true, false, {kWelcomeStep, kUserStep, kPassStep}, Nothing, LogIn, Connected, Truth},
        {"log-in, anonymous",
         true,
         false,
         {kWelcomeStep, kUserStep, kPassStep},
         [](Scene& s) { s.site->bAnonymous = 1; },
         LogIn,
         Connected,
         Truth},
        {"log-in with account",
         true,
         false,
         {kWelcomeStep, kUserStep, Reply("PASS", "332 Account required."), Reply("ACCT", "230 Logged on.")},
         askAccount,
         LogIn,
         Connected,
         Truth},
        {"log-in, password asked",
         true,
         false,
         {kWelcomeStep, kUserStep, kPassStep},
         askPassword,
         LogIn,
         Connected,
         Truth},
        {"log-in through gateway",
         true,
         false,
         {kWelcomeStep, kUserStep, kPassStep, Tolerant(Reply("SITE", "200 Connected."), Tolerates::AllButPermanent),
          user2, pass2},
         gateway,
         LogIn,
         Connected,
         Truth},
    };
}

std::vector<Operation> CommandOperations() {
    return {
        {"CWD",
         false,
         true,
         {Reply("CWD", "250 Directory changed.")},
         Nothing,
         [](Scene& s) {
             int result = 0;
             ChangeRemoteDirectory(s.site, "/pub", s.h.reply, &result, true);
             return result;
         },
         [](Scene& s) { return s.site->pszCurrentDir.view() == "/pub"; },
         Same},
        {"PWD",
         false,
         false,
         {kPwdStep},
         Nothing,
         [](Scene& s) { return AsResult(GetRemoteDirectory(s.site).view() == "/"); },
         [](Scene&) { return true; },
         Truth},
        {"MKD",
         false,
         true,
         {Reply("MKD", "257 \"/new\" created.")},
         Nothing,
         [](Scene& s) { return AsResult(MakeRemoteDirectory(s.site, "/new")); },
         [](Scene& s) { return s.h.server.Exists("/new"); },
         Truth},
        {"RMD",
         false,
         false,
         {Reply("RMD", "250 Done.")},
         Nothing,
         [](Scene& s) { return DoRMD(s.site, "/empty", s.h.reply); },
         [](Scene& s) { return !s.h.server.Exists("/empty"); },
         Same},
        {"DELE",
         false,
         false,
         {Reply("DELE", "250 Done.")},
         Nothing,
         [](Scene& s) { return DoDELE(s.site, "/gone", s.h.reply); },
         [](Scene& s) { return !s.h.server.Exists("/gone"); },
         ClassOnly},
        {"rename",
         false,
         true,
         {Reply("RNFR", "350 Ready for RNTO."), Reply("RNTO", "250 Renamed.")},
         Nothing,
         [](Scene& s) { return AsResult(RenameRemoteItem(s.site, "/gone", "/renamed")); },
         [](Scene& s) { return s.h.server.Exists("/renamed") && !s.h.server.Exists("/gone"); },
         Truth},
    };
}

std::vector<Operation> TransferOperations() {
    const auto forceType = [](Scene&) { gSession.currentType = 'I'; };
    const auto store = [](Scene&) { gZarn.SENDUNIQUE = 0; };
    const auto storeUnique = [](Scene&) { gZarn.SENDUNIQUE = 1; };
    static const std::string whole(kDownloadSize, 'd');
    return {
        {"LIST", false, true,
         std::vector<Step>{Reply("CWD", "250 Directory changed."), TypeStep()} + Transfer("LIST", kLine), forceType,
         [](Scene& s) { return LV_ChangeDir(s.pub); },
         [](Scene& s) {
             return s.list.Names() == std::vector<std::string>{"a.txt", "deep"};
         },
         ListingResult},
        {"RETR", false, true,
         std::vector<Step>{TypeStep()} + Transfer("RETR", whole.c_str() + kDownloadSize / 2, 1, whole.c_str()), Nothing,
         Download, [](Scene& s) { return s.LocalBytes("down") == std::string(kDownloadSize, 'd'); }, Same},
        {"STOR", false, false, std::vector<Step>{TypeStep()} + Transfer("STOR", ""), store, Upload, Uploaded,
         UploadResult},
        {"STOU", false, false, std::vector<Step>{TypeStep()} + Transfer("STOU", ""), storeUnique, Upload, Uploaded,
         UploadResult},
    };
}

std::vector<Operation> LookingOperations() {
    const auto forceType = [](Scene&) { gSession.currentType = 'I'; };
    const Step syst = Tolerant(Reply("SYST", "215 UNIX Type: L8"), Tolerates::AnyReply, Step::Loss::Ends);
    return {
        {"HELP and SYST",
         false,
         false,
         {TypeStep(), Reply("PORT", "200 PORT command successful."),
          WithText({"HELP", 1, Part::Preliminary, "214 No help here."}), syst},
         forceType,
         [](Scene& s) { return ReadProcessHelp(s.site); },
         [](Scene& s) { return s.site->dwCurType == HOST_TYPE_UNIX; },
         Same},
        {"recursive count", false, true,
         std::vector<Step>{Reply("CWD", "250 Directory changed.")} + Transfer("LIST", kLine, 1, kPubLines) +
             std::vector<Step>{Reply("CWD", "250 Directory changed.", 2)} + Transfer("LIST", kLine, 2),
         Nothing, Count, [](Scene& s) { return s.folders == 1 && s.files == 2; }, WalkResult},
        {"link to a folder", false, false,
         std::vector<Step>{Reply("CWD", "250 Directory changed."), Reply("CWD", "250 Directory changed.", 2)} +
             Transfer("LIST", kLine, 1, kPubLines) +
             std::vector<Step>{Tolerant(Reply("CWD", "250 Directory changed.", 3), Tolerates::AnyReply)},
         Nothing, [](Scene& s) { return ResolveLink(s, "link -> /pub/deep"); }, [](Scene&) { return true; }, Truth},
        {"link to a file", false, false,
         std::vector<Step>{
             Tolerant(Reply("CWD", "550 /gone: No such file or directory."), Tolerates::AnyReply, Step::Loss::Ends)} +
             Transfer("LIST", kLine, 1, kGoneLine),
         Nothing, [](Scene& s) { return ResolveLink(s, "link -> /gone"); }, [](Scene&) { return true; }, Truth},
    };
}

}  // namespace

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> list = ConnectOperations();
        for (auto make : {CommandOperations, TransferOperations, LookingOperations})
            for (Operation& operation : make()) list.push_back(std::move(operation));
        return list;
    }();
    return all;
}

std::string TestName(const Operation& operation) {
    std::string name = operation.name;
    std::erase_if(name, [](char c) { return c == ' ' || c == ',' || c == '-'; });
    return name;
}

}  // namespace matrix
