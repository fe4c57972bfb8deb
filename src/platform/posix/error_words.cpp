#include "platform/posix/error_words.h"

#include <cerrno>
#include <cstring>

namespace tarvello {

std::string error_words(int error) {
    switch (error) {
    case ENOENT:
        return "il file o la cartella non esiste";
    case ENOTDIR:
        return "una parte del percorso non è una cartella";
    case EACCES:
    case EPERM:
        return "non si hanno i permessi necessari";
    case EROFS:
        return "il disco è protetto da scrittura";
    case ENOSPC:
    case EDQUOT:
        return "lo spazio sul disco è esaurito";
    case EEXIST:
        return "il file esiste già";
    case EFBIG:
        return "il file è troppo grande";
    case EISDIR:
        return "è una cartella";
    case ENAMETOOLONG:
        return "il nome è troppo lungo";
    case ELOOP:
        return "i collegamenti del percorso girano in tondo";
    case EBUSY:
    case ETXTBSY:
        return "il file è in uso in un altro programma";
    case EIO:
        return "il disco non risponde correttamente";
    case ENXIO:
    case ENODEV:
    case ESTALE:
        return "il disco o la cartella di rete non c'è più";
    default:
        return "il sistema dà l'errore " + std::to_string(error) + ", " + std::strerror(error);
    }
}

Failure file_failure(int error, const std::string& what, const std::string& path) {
    const int number = error == ENOENT                      ? failure_number::file_not_found
                       : error == ENOSPC || error == EDQUOT ? failure_number::disk_full
                                                            : failure_number::file_access;
    return {number, "File", what + " \"" + path + "\": " + error_words(error) + "."};
}

} // namespace tarvello
