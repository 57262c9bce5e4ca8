// The client collection of a run: builds the contexts, the clients and
// their traffic threads up front, connects and disconnects them within time
// limits, starts and stops publishing, and gives the transmit figures.
//
// Contexts come in three modes: a number of clients per context (which
// wins), a context per client, or one context for all. Every client and
// every publisher thread draws its random numbers from its own seed,
// consecutive from the master seed in creation order, so that a run with a
// given "-rseed=" repeats its choices.
//
// Publishing and cache requesting have a latch: once started, a restart is
// refused until the matching stop has run, also when the threads have ended
// by themselves, so that a second run cannot mix with the first one's
// figures.
//
// Cache request and bind threads are not part of this build: their lists
// stay empty, so nothing is requesting or binding, and starting either
// raises PubSubException ("Cache requesting is not available in this
// build.", "Binding is not available in this build.").
//
// Ownership: owns every client, context, publisher thread and (through the
// base) the timer thread. The destructor stops the traffic, disconnects,
// then deletes threads, clients and contexts in that order: a client must
// not outlive its context, and a publisher thread not its client.
//
// Threads: main thread only, except sigalrmAction (signal context). Waits
// poll at 100 ms; the traffic threads' flags are read without locks.
#pragma once

#include <vector>

#include "common/AbstractClientCollection.h"
#include "vexload/ClientPubThread.h"

namespace zorvane::pubsub {

class CacheRequestThread;
class BindThread;

class PerfClientCollection : public AbstractClientCollection {
  public:
    // Builds contexts, clients and publisher threads; nothing connects and
    // no thread publishes yet. Throws PubSubException for the refusals of
    // the base and of Client (settings this build cannot serve); whatever
    // was built by then is torn down again.
    PerfClientCollection(const ClientProperties& clientProps,
                         const StatsCustomizationProperties& rxStatsProps);
    // Stops publishing and disconnects (each failure logged, not thrown),
    // then deletes threads, clients and contexts.
    ~PerfClientCollection() override;

    // For each client index, the index of the context it runs on (see the
    // .cpp for the arithmetic). Needs at least one client.
    static std::vector<std::size_t> contextPlan(const ClientProperties& props);

    // Connects every client in order. Unless connecting without blocking,
    // waits up to 3 minutes for all to be up ("Clients did not startup
    // within 3 min.") and logs the broker's capabilities. Refused while any
    // client is connected.
    void connect() override;
    // Disconnects every client (slow-subscriber delays switched off) and
    // waits up to 10 seconds for all to be down ("Clients did not
    // disconnect in time.").
    void disconnect() override;

    void startBinding(const EpConfigProperties& epProps) override;
    void stopBinding() override;
    bool isBinding() override { return _isBinding(); }

    // Hands each publisher thread its client's message list (lists dealt
    // round robin over client ids) and starts it; waits up to 3 minutes for
    // a thread to be publishing or all to be done, unless told to skip the
    // check.
    void startPublishing(const PublishProperties& publishProps,
                         const StatsCustomizationProperties& statsCust) override;
    // Asks every publisher thread to stop, waits up to 3 minutes for them
    // and joins them. Nothing to do when publishing never started.
    void stopPublishing() override;
    bool isPublishing() override { return _isPublishing(); }

    void startCacheRequesting(const CacheProperties& cacheProps) override;
    void stopCacheRequesting() override;
    bool isCacheRequesting() override { return _isCacheRequesting(); }

    // Messages per second the library sent for all clients, over the time
    // from the first start to the last end of the traffic threads (to now
    // while they run); 0.0 before they started.
    double getTxThroughPut() override;
    // The publisher threads' statistics: aggregated over all of them, or a
    // copy of the thread at position clientIndex, which counts publisher
    // threads (grouped by client), not clients.
    PerfStats getTxStats(int clientIndex) override;
    // Also restarts the CPU measurement and the publisher threads' figures.
    void resetStats(int clientIndex) override;
    // The clients' texts, and with smooth publishing each publisher
    // thread's lateness.
    std::string toString() override;
    UINT64 _getLastPubTime() override;
    void _setLastPubTime(UINT64 timeInUs, int index) override;

    // Processor time of the process since the last resetStats (or start) as
    // a fraction of the time traffic flowed.
    double getCpuUsage();

    bool _isPublishing() const;
    bool _donePublishing() const;
    bool _isCacheRequesting() const;
    bool _doneCacheRequesting() const;
    bool _isBinding() const;
    bool _doneBinding() const;
    UINT64 _getPubStartTime() const;
    UINT64 _getPubEndTime() const;
    UINT64 _getCacheStartTime() const;
    UINT64 _getCacheEndTime() const;

    const std::vector<ClientPubThread*>& getPubThreads() const { return pubThreadsVect_m; }
    std::size_t getNumContexts() const { return contextVect_m.size(); }

  private:
    // Deletes threads, clients and contexts (destructor and failed
    // construction).
    void destroyAll();

    std::vector<ClientPubThread*> pubThreadsVect_m;       // owned, grouped by client
    std::vector<CacheRequestThread*> cacheThreadsVect_m;  // empty in this build
    std::vector<BindThread*> bindThreadsVect_m;           // empty in this build
    UINT64 cpuUsageBaseAmount_m = 0;  // microseconds of CPU at the last resetStats
    bool stopPubRequired_m = false;
    bool stopCacheRequired_m = false;
};

}  // namespace zorvane::pubsub
