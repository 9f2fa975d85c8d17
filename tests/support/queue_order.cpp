#include "support/queue_order.h"

#ifdef TALLY_TSAN

#include <QEvent>
#include <QMetaObject>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace {

char queue; // stands for those of all threads

template <typename Function>
Function *of_qt(const char *symbol)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

// The program's calls of these two, its signals and its calls of functors, come here first.

void QMetaObject::activate(QObject *sender, const QMetaObject *type, int signal, void **arguments)
{
    static auto *const real = of_qt<void(QObject *, const QMetaObject *, int, void **)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&queue);
    real(sender, type, signal, arguments);
}

bool QMetaObject::invokeMethodImpl(QObject *receiver, QtPrivate::QSlotObjectBase *functor,
                                   Qt::ConnectionType type, void *result)
{
    static auto *const real =
        of_qt<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14"
            "ConnectionTypeEPv");
    __tsan_release(&queue);
    return real(receiver, functor, type, result);
}

bool tally::test::OrderedApplication::notify(QObject *receiver, QEvent *event)
{
    if (event->type() == QEvent::MetaCall)
        __tsan_acquire(&queue);
    return QCoreApplication::notify(receiver, event);
}

#endif
