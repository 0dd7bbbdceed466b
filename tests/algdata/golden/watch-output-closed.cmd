# It ends when nobody reads its output any more, not only at the next change.
cp good/apRank.txt $scratch
timeout 60 algdata watch $scratch 2> /dev/null | sleep 0.3
echo "${PIPESTATUS[@]}"
