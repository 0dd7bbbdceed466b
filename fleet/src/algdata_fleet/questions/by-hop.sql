-- Delay and throughput by hop
--
-- A hop is the depth in the tree. The delay is that to the present father, from the device's
-- own delay file; a device without one counts for the throughput only.
WITH delays AS (
    SELECT day, home, device, fatherMAC, avg(delayTime) AS delay, max(delayTime) AS longest
    FROM time_delay_sample
    WHERE delayTime > 0 AND device IS NOT NULL
    GROUP BY day, home, device, fatherMAC
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
    AND delays.fatherMAC = tree.fatherMAC
WHERE tree.attachment IN ('root', 'child')
GROUP BY tree.day, tree.depth
ORDER BY tree.day, hop
