-- Delay and throughput by hop
--
-- A hop is the depth in the tree. The delay is that to the present father, from the device's
-- own delay file, so the path has to state `device`; a device without one counts for the
-- throughput only. A device counts once for each snapshot.
--
-- day         hop  devices  throughput  lowest  delay  longestDelay
-- 2026-11-20    0      200      1000.0    1000      -             -
-- 2026-11-20    1      790       561.1      79   18.7           123
-- 2026-11-20    2      190        48.5       1   52.3           476
-- 2026-11-21    0      200      1000.0    1000      -             -
WITH delays AS (
    SELECT day, home, snapshot, device, fatherMAC, avg(delayTime) AS delay, max(delayTime) AS longest
    FROM time_delay_sample
    WHERE delayTime > 0 AND device IS NOT NULL
    GROUP BY day, home, snapshot, device, fatherMAC
)
SELECT
    tree.day,
    tree.depth AS hop,
    count(*) AS devices,
    round(avg(tree.throughput), 1) AS throughput,
    min(tree.throughput) AS lowest,
    round(avg(delays.delay), 1) AS delay,
    max(delays.longest) AS longestDelay
FROM tree
LEFT JOIN delays
    ON delays.day = tree.day AND delays.home = tree.home AND delays.device = tree.deviceMAC
    AND delays.snapshot IS NOT DISTINCT FROM tree.snapshot AND delays.fatherMAC = tree.fatherMAC
WHERE tree.attachment IN ('root', 'child')
GROUP BY tree.day, tree.depth
ORDER BY tree.day, hop
